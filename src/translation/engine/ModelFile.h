#pragma once

#include "translation/engine/EngineError.h"
#include "translation/engine/MappedFile.h"

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace lumaphone::engine {

/// The numbers that a model file uses for the types of its tensors.
enum class TensorType : std::uint64_t {
    int8 = 0x101,
    int32 = 0x104,
    uint32 = 0x204,
    float16 = 0x402,
    float32 = 0x404,
    /// 8-bit weights followed by one float32, the multiplier that quantised them; matrices lie transposed.
    quantizedInt8 = 0x4101,
    quantizedInt16 = 0x4102,
};

class ByteReader;

/// One named array of a model file. The data lies in the mapped file.
struct Tensor
{
    TensorType type;
    std::vector<std::int32_t> shape; ///< every extent is positive
    std::uint64_t elements; ///< product of the shape
    std::span<const std::byte> data; ///< at least what the type and the shape ask for, padding included
};

/// A Marian ".bin" model: named tensors behind a header. Reading checks the header as a whole; the weights
/// stay where the file is mapped.
class ModelFile
{
public:
    /// Throws EngineError.
    explicit ModelFile(const QString &path);
    /// The same for bytes that somebody else keeps; `path` names them in errors.
    ModelFile(std::span<const std::byte> bytes, const QString &path);

    const QString &path() const { return m_path; }
    /// The tensor of that name, or none.
    const Tensor *find(std::string_view name) const;
    std::size_t tensorCount() const { return m_tensors.size(); }

    /// Gives back the memory of bytes of a tensor until they are read again.
    void release(std::span<const std::byte> bytes) const;

    [[noreturn]] void fail(EngineError::Case which, const QString &subject) const;

private:
    /// What the header says of one tensor, in bytes.
    struct Entry
    {
        std::uint64_t nameLength;
        std::uint64_t type;
        std::uint64_t dimensions;
        std::uint64_t dataLength;
    };

    void read(std::span<const std::byte> bytes);
    // The parts of the header, in their order.
    std::vector<Entry> readEntries(ByteReader &reader, std::size_t fileSize) const;
    std::vector<std::string> readNames(ByteReader &reader, const std::vector<Entry> &entries) const;
    std::vector<Tensor> readShapes(ByteReader &reader, const std::vector<Entry> &entries,
        const std::vector<std::string> &names, std::size_t fileSize) const;

    QString m_path;
    std::optional<MappedFile> m_mapping;
    std::map<std::string, Tensor, std::less<>> m_tensors;
};

} // namespace lumaphone::engine
