#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>

namespace lumaphone::fuzz {

/// A file made from a fuzzer's input. The first byte chooses: 'r' takes the rest as the file; anything else
/// takes it as edits of a sound one: pieces of five bytes, a position (in the first 4,096 bytes if its
/// highest bit is set) and what to flip there. Up to four bytes left over say how much of the end to cut off.
inline std::string editedBytes(const std::string &sound, std::span<const std::uint8_t> input)
{
    if (input.empty())
        return {};
    const auto rest = input.subspan(1);
    if (input.front() == 'r')
        return {reinterpret_cast<const char *>(rest.data()), rest.size()};
    std::string bytes = sound;
    std::size_t at = 0;
    for (; at + 5 <= rest.size(); at += 5) {
        std::uint32_t position = 0;
        std::memcpy(&position, rest.data() + at, sizeof position);
        const bool isInHeader = (position & 0x80000000U) != 0;
        const std::size_t range = isInHeader && bytes.size() > 4096 ? 4096 : bytes.size();
        char &byte = bytes[(position & 0x7FFFFFFFU) % range];
        byte = static_cast<char>(byte ^ rest[at + 4]);
    }
    std::uint32_t cut = 0;
    std::memcpy(&cut, rest.data() + at, rest.size() - at);
    bytes.resize(bytes.size() - cut % bytes.size());
    return bytes;
}

} // namespace lumaphone::fuzz
