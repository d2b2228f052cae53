#pragma once

#include "base/Record.h"

namespace lumaphone::test {

/// The n-th identity, starting with 1: 00000000-0000-0000-0000-00000000000n.
inline QUuid countedUuid(uint number)
{
    return QUuid(
        0, 0, 0, 0, 0, 0, 0, uchar(number >> 24), uchar(number >> 16), uchar(number >> 8), uchar(number));
}

/// Hands out counted identities one after another.
inline UuidGenerator countedUuids()
{
    return [number = 0U]() mutable {
        return countedUuid(++number);
    };
}

} // namespace lumaphone::test
