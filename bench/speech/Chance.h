#pragma once

#include <random>

namespace lumaphone::bench {

inline double between(double least, double most, std::mt19937 &chance)
{
    return std::uniform_real_distribution<double>(least, most)(chance);
}

inline int oneOf(int least, int most, std::mt19937 &chance)
{
    return std::uniform_int_distribution<int>(least, most)(chance);
}

} // namespace lumaphone::bench
