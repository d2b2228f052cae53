#pragma once

#include <QString>

#include <cstddef>
#include <cstdint>
#include <span>

namespace lumaphone::engine {

/// A regular file that is open for reading as long as this object lives.
class OpenFile
{
public:
    /// Throws EngineError (unreadable).
    explicit OpenFile(const QString &path);
    OpenFile(const OpenFile &) = delete;
    OpenFile &operator=(const OpenFile &) = delete;
    ~OpenFile();

    const QString &path() const { return m_path; }
    int descriptor() const { return m_descriptor; }
    /// In bytes, when it was opened.
    std::uint64_t size() const { return m_size; }

    /// Fills `bytes` with those that begin at `position` and belong to `subject`. Throws EngineError
    /// (Truncated if the file ends before, Unreadable).
    void read(std::uint64_t position, std::span<std::byte> bytes, const QString &subject) const;

private:
    QString m_path;
    int m_descriptor;
    std::uint64_t m_size = 0;
};

} // namespace lumaphone::engine
