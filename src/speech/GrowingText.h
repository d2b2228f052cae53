#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace lumaphone {

/// Makes volatile texts restful for the reader where a segment is decoded from its start again and again:
/// shows of each decode only what the decode before it agrees with.
class StableText
{
public:
    /// The text to show after a decode of a segment, at whole words. None: what is shown stays.
    std::optional<QString> decoded(std::int64_t segment, const QString &text);

private:
    std::optional<std::int64_t> m_segment;
    QString m_previous;
    QString m_shown;
};

} // namespace lumaphone
