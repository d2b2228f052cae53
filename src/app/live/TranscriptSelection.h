#pragma once

#include <QString>

#include <compare>
#include <functional>
#include <optional>

namespace lumaphone {

/// A place in the texts of one column of the transcript.
struct TranscriptPosition
{
    int row = 0;
    int offset = 0; ///< in UTF-16 units

    auto operator<=>(const TranscriptPosition &) const = default; // NOLINT(modernize-use-nullptr)
};

/// A part of a text, from one offset to another.
struct TextRange
{
    int from = 0;
    int to = 0;

    bool operator==(const TextRange &) const = default;
};

/// What is selected of a transcript: text of one column, across its lines, or whole lines with both columns.
class TranscriptSelection
{
public:
    enum class Extent {
        source,
        translation,
        lines, ///< offsets do not count
    };
    /// The text of a row in a column.
    using TextOf = std::function<QString(int row, Extent column)>;

    /// The first place, to which extend() adds.
    void begin(Extent extent, TranscriptPosition anchor);
    void extend(TranscriptPosition head);
    void clear() { m_span.reset(); }
    /// Follows its lines.
    void rowInserted(int row);

    bool isEmpty() const;
    /// Where it was begun, if it is one of whole lines.
    std::optional<int> anchorRow() const;
    /// The first and the last row; none if it is empty.
    std::optional<std::pair<int, int>> rows() const;
    /// What is selected of a text of that length; nothing if from and to are the same.
    TextRange in(int row, Extent column, int length) const;
    /// A line for each row of one column; whole lines with their translations below them, and blank lines
    /// between.
    QString text(const TextOf &textOf) const;

private:
    struct Span
    {
        Extent extent = Extent::lines;
        TranscriptPosition anchor;
        TranscriptPosition head;
    };

    std::optional<Span> m_span;
};

} // namespace lumaphone
