#include "app/floating/ReadingRows.h"

#include <algorithm>

namespace lumaphone {

int ReadingRows::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant ReadingRows::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount()) {
        return {};
    }
    const ReadingLine &line = m_rows[static_cast<std::size_t>(index.row())].line;
    switch (role) {
    case SourceTextRole:
        return line.source;
    case SourceLanguageRole:
        return line.sourceLanguage;
    case TranslationTextRole:
        return line.translation;
    default:
        return {};
    }
}

QHash<int, QByteArray> ReadingRows::roleNames() const
{
    return {{SourceTextRole, "sourceText"}, {SourceLanguageRole, "sourceLanguage"},
        {TranslationTextRole, "translationText"}};
}

void ReadingRows::show(std::vector<ReadingPage::Row> rows)
{
    removeWhatHasLeft(rows);
    // What is left is in both, in one order.
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const int at = static_cast<int>(row);
        if (row >= m_rows.size() || m_rows[row].key != rows[row].key) {
            beginInsertRows({}, at, at);
            m_rows.insert(m_rows.begin() + at, std::move(rows[row]));
            endInsertRows();
        } else if (m_rows[row] != rows[row]) {
            m_rows[row] = std::move(rows[row]);
            emit dataChanged(index(at), index(at));
        }
    }
}

void ReadingRows::removeWhatHasLeft(const std::vector<ReadingPage::Row> &rows)
{
    for (int at = rowCount() - 1; at >= 0; --at) {
        const std::size_t key = m_rows[static_cast<std::size_t>(at)].key;
        const bool stays = std::any_of(
            rows.begin(), rows.end(), [key](const ReadingPage::Row &row) { return row.key == key; });
        if (!stays) {
            beginRemoveRows({}, at, at);
            m_rows.erase(m_rows.begin() + at);
            endRemoveRows();
        }
    }
}

} // namespace lumaphone
