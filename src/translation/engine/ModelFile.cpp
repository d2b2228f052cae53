#include "translation/engine/ModelFile.h"

#include "translation/engine/ByteReader.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <utility>

namespace lumaphone::engine {
namespace {

static_assert(std::endian::native == std::endian::little, "model files are read in place");

constexpr std::uint64_t formatVersion = 1;
// Generous bounds: a large student has a few hundred tensors of at most four dimensions.
constexpr std::uint64_t mostTensors = 16384;
constexpr std::uint64_t longestName = 256;
constexpr std::uint64_t mostDimensions = 8;
constexpr std::uint64_t longestPadding = 4096;

bool isKnown(std::uint64_t type)
{
    switch (static_cast<TensorType>(type)) {
    case TensorType::int8:
    case TensorType::int32:
    case TensorType::uint32:
    case TensorType::float16:
    case TensorType::float32:
    case TensorType::quantizedInt8:
    case TensorType::quantizedInt16:
        return true;
    }
    return false;
}

std::uint64_t elementSize(TensorType type)
{
    switch (type) {
    case TensorType::int8:
    case TensorType::quantizedInt8:
        return 1;
    case TensorType::float16:
    case TensorType::quantizedInt16:
        return 2;
    case TensorType::int32:
    case TensorType::uint32:
    case TensorType::float32:
        return 4;
    }
    Q_UNREACHABLE();
}

std::uint64_t neededBytes(const Tensor &tensor)
{
    const bool quantized
        = tensor.type == TensorType::quantizedInt8 || tensor.type == TensorType::quantizedInt16;
    return tensor.elements * elementSize(tensor.type) + (quantized ? sizeof(float) : 0);
}

QString printable(std::string_view name)
{
    QString text;
    for (const char character : name)
        text += character >= ' ' && character <= '~' ? QLatin1Char(character) : QLatin1Char('?');
    return text;
}

} // namespace

ModelFile::ModelFile(const QString &path)
    : m_path(path)
{
    m_mapping.emplace(path);
    read(m_mapping->bytes());
}

ModelFile::ModelFile(std::span<const std::byte> bytes, const QString &path)
    : m_path(path)
{
    read(bytes);
}

const Tensor *ModelFile::find(std::string_view name) const
{
    const auto found = m_tensors.find(name);
    return found == m_tensors.end() ? nullptr : &found->second;
}

void ModelFile::release(std::span<const std::byte> bytes) const
{
    if (m_mapping)
        MappedFile::release(bytes);
}

void ModelFile::fail(EngineError::Case which, const QString &subject) const
{
    throw EngineError(which, m_path, subject);
}

void ModelFile::read(std::span<const std::byte> bytes)
{
    using enum EngineError::Case;
    ByteReader reader(bytes, m_path);
    const std::vector<Entry> entries = readEntries(reader, bytes.size());
    std::vector<std::string> names = readNames(reader, entries);
    std::vector<Tensor> tensors = readShapes(reader, entries, names, bytes.size());

    const auto padding = reader.number<std::uint64_t>(QStringLiteral("padding"));
    if (padding > longestPadding)
        fail(damaged, QStringLiteral("padding of %1 bytes").arg(padding));
    reader.take(padding, QStringLiteral("padding"));

    for (std::size_t index = 0; index < entries.size(); ++index) {
        const QString name = printable(names[index]);
        if (reader.position() % alignof(float) != 0)
            fail(damaged, QStringLiteral("%1 is not aligned").arg(name));
        tensors[index].data = reader.take(entries[index].dataLength, name);
        if (!m_tensors.emplace(std::move(names[index]), std::move(tensors[index])).second)
            fail(damaged, QStringLiteral("%1 occurs twice").arg(name));
    }
    if (reader.remaining() != 0)
        fail(damaged, QStringLiteral("%1 bytes too many").arg(reader.remaining()));
}

std::vector<ModelFile::Entry> ModelFile::readEntries(ByteReader &reader, std::size_t fileSize) const
{
    using enum EngineError::Case;
    const QString header = QStringLiteral("header");
    if (const auto version = reader.number<std::uint64_t>(header); version != formatVersion)
        fail(notRecognised, QStringLiteral("format version %1").arg(version));
    const auto count = reader.number<std::uint64_t>(header);
    if (count == 0 || count > mostTensors)
        fail(damaged, QStringLiteral("%1 tensors").arg(count));

    std::vector<Entry> entries;
    for (std::uint64_t index = 0; index < count; ++index) {
        const Entry entry = {reader.number<std::uint64_t>(header), reader.number<std::uint64_t>(header),
            reader.number<std::uint64_t>(header), reader.number<std::uint64_t>(header)};
        const QString subject = QStringLiteral("entry %1").arg(index);
        if (entry.nameLength < 2 || entry.nameLength > longestName)
            fail(damaged, QStringLiteral("%1: name of %2 bytes").arg(subject).arg(entry.nameLength));
        if (!isKnown(entry.type))
            fail(damaged, QStringLiteral("%1: type 0x%2").arg(subject).arg(entry.type, 0, 16));
        if (entry.dimensions == 0 || entry.dimensions > mostDimensions)
            fail(damaged, QStringLiteral("%1: %2 dimensions").arg(subject).arg(entry.dimensions));
        if (entry.dataLength > fileSize)
            fail(truncated, QStringLiteral("%1: %2 bytes of data").arg(subject).arg(entry.dataLength));
        entries.push_back(entry);
    }
    return entries;
}

std::vector<std::string> ModelFile::readNames(ByteReader &reader, const std::vector<Entry> &entries) const
{
    using enum EngineError::Case;
    std::vector<std::string> names;
    for (const Entry &entry : entries) {
        const auto raw = reader.take(entry.nameLength, QStringLiteral("names"));
        const std::string_view name(reinterpret_cast<const char *>(raw.data()), raw.size());
        if (name.find('\0') != name.size() - 1)
            fail(damaged, QStringLiteral("name of entry %1").arg(names.size()));
        names.emplace_back(name.substr(0, name.size() - 1));
    }
    return names;
}

std::vector<Tensor> ModelFile::readShapes(ByteReader &reader, const std::vector<Entry> &entries,
    const std::vector<std::string> &names, std::size_t fileSize) const
{
    using enum EngineError::Case;
    std::vector<Tensor> tensors;
    for (std::size_t index = 0; index < entries.size(); ++index) {
        Tensor tensor = {static_cast<TensorType>(entries[index].type), {}, 1, {}};
        for (std::uint64_t dimension = 0; dimension < entries[index].dimensions; ++dimension) {
            const auto extent = reader.number<std::int32_t>(QStringLiteral("shapes"));
            // No tensor has more elements than the file has bytes, which also keeps the product small.
            if (extent <= 0 || tensor.elements * static_cast<std::uint64_t>(extent) > fileSize)
                fail(damaged, QStringLiteral("shape of %1").arg(printable(names[index])));
            tensor.elements *= static_cast<std::uint64_t>(extent);
            tensor.shape.push_back(extent);
        }
        if (neededBytes(tensor) > entries[index].dataLength)
            fail(damaged,
                QStringLiteral("%1: less data than its shape asks for").arg(printable(names[index])));
        tensors.push_back(std::move(tensor));
    }
    return tensors;
}

} // namespace lumaphone::engine
