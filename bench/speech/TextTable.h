#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace lumaphone::bench {

enum class TableFormat { text, markdown };

/// A table of figures: a label for each row, a head for each column of values.
class TextTable
{
public:
    explicit TextTable(const QStringList &heads)
        : m_rows {heads}
    {
    }

    /// The first cell is the label.
    void add(const QStringList &row) { m_rows.push_back(row); }
    /// With a line break at the end. Columns are aligned in both forms.
    QString text(TableFormat format) const;

private:
    std::vector<QStringList> m_rows; ///< the first one are the heads
};

} // namespace lumaphone::bench
