#pragma once

#include "session/LumaphoneCaptionLine.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QList>

#include <utility>
#include <vector>

namespace lumaphone {

/// Encodes a session's lines as the elements of a JSON array, again and again as the list changes: only lines
/// that are new or different are encoded, so that a long session costs little more than a short one.
class CaptionLinesEncoder
{
public:
    /// The lines' objects, indented by four blanks and separated by comma and line break. Valid until the
    /// next call.
    QByteArrayView encode(const QList<LumaphoneCaptionLine> &lines);

    /// Whether a line has become final, or has come as a final one, since the last takeBecameFinal().
    bool takeBecameFinal() { return std::exchange(m_becameFinal, false); }

private:
    void replaceLines(
        std::size_t first, std::size_t removed, const QList<LumaphoneCaptionLine> &lines, qsizetype added);

    std::vector<LumaphoneCaptionLine> m_lines; ///< as they were encoded last
    std::vector<qsizetype> m_ends; ///< where each line's bytes end, the separator included
    QByteArray m_bytes; ///< every line followed by a separator
    bool m_becameFinal = false;
};

} // namespace lumaphone
