#include "speech/host/ConfigurationBlock.h"

namespace lumaphone::host {

namespace {

// Several times the largest structure of the library.
constexpr std::size_t blockSize = 4096;

} // namespace

ConfigurationBlock::ConfigurationBlock()
    : m_bytes(blockSize)
{
}

void ConfigurationBlock::setText(std::size_t offset, const std::string &text)
{
    put(offset, m_texts.emplace_back(text).c_str());
}

std::string textAt(const void *structure, std::size_t offset)
{
    const auto *const text = fieldAt<const char *>(structure, offset);
    return text == nullptr ? std::string() : std::string(text);
}

} // namespace lumaphone::host
