#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

namespace lumaphone::bench {

/// The smallest value that this share of the values do not exceed; of no values 0.
inline double percentile(std::vector<double> values, double share)
{
    if (values.empty()) {
        return 0;
    }
    std::sort(values.begin(), values.end());
    const double rank = std::ceil(share * static_cast<double>(values.size()));
    return values[static_cast<std::size_t>(std::max(1.0, rank)) - 1];
}

} // namespace lumaphone::bench
