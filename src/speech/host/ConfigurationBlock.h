#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <deque>
#include <string>
#include <vector>

namespace lumaphone::host {

/// A configuration structure of the runtime, whose headers we do not have: values at known offsets in a
/// zeroed block. The block is larger than the structure, so that a newer library finds zeros where it has
/// added fields. Texts live as long as the block.
class ConfigurationBlock
{
public:
    ConfigurationBlock();

    void setText(std::size_t offset, const std::string &text);
    void setInteger(std::size_t offset, std::int32_t value) { put(offset, value); }
    void setFloat(std::size_t offset, float value) { put(offset, value); }

    const void *data() const { return m_bytes.data(); }

private:
    template<typename Value> void put(std::size_t offset, Value value)
    {
        std::memcpy(m_bytes.data() + offset, &value, sizeof value);
    }

    std::vector<std::byte> m_bytes;
    std::deque<std::string> m_texts;
};

/// A field of a result structure.
template<typename Value> Value fieldAt(const void *structure, std::size_t offset)
{
    Value value;
    std::memcpy(&value, static_cast<const std::byte *>(structure) + offset, sizeof value);
    return value;
}

/// A text field; empty for a null pointer.
std::string textAt(const void *structure, std::size_t offset);

} // namespace lumaphone::host
