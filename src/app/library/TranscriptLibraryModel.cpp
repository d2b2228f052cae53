#include "app/library/TranscriptLibraryModel.h"

#include "app/library/TranscriptTexts.h"
#include "base/Text.h"

#include <algorithm>
#include <iterator>

namespace lumaphone {

namespace {

/// Whether both look the same in the list.
bool showSame(const TranscriptRecordMetadata &a, const TranscriptRecordMetadata &b)
{
    return a.title == b.title && a.createdAt == b.createdAt && a.lineCount == b.lineCount
        && a.providerName == b.providerName && a.languageName() == b.languageName();
}

} // namespace

TranscriptLibraryModel::TranscriptLibraryModel(const QLocale &locale, QObject *parent)
    : QAbstractListModel(parent)
    , m_locale(locale)
{
}

int TranscriptLibraryModel::rowOf(const QUuid &id) const
{
    const auto found = std::find_if(m_rows.begin(), m_rows.end(),
        [&id](const TranscriptRecordMetadata *record) { return record->id == id; });
    return found == m_rows.end() ? -1 : static_cast<int>(found - m_rows.begin());
}

int TranscriptLibraryModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant TranscriptLibraryModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    const TranscriptRecordMetadata &record = *m_rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case RecordIdRole:
        return record.id.toString(QUuid::WithoutBraces);
    case TitleRole:
    case Qt::DisplayRole:
        return text::trimmed(record.title).isEmpty() ? QStringLiteral("未命名的字幕紀錄") : record.title;
    case SubtitleRole:
        return metadataSubtitle(record, m_locale);
    default:
        return {};
    }
}

QHash<int, QByteArray> TranscriptLibraryModel::roleNames() const
{
    return {{RecordIdRole, "recordId"}, {TitleRole, "title"}, {SubtitleRole, "subtitle"}};
}

void TranscriptLibraryModel::setRecords(const QList<TranscriptRecordMetadata> &records)
{
    Rows wanted;
    QHash<QUuid, int> positions;
    wanted.reserve(static_cast<std::size_t>(records.size()));
    positions.reserve(records.size());
    for (const TranscriptRecordMetadata &record : records) {
        positions.insert(record.id, static_cast<int>(wanted.size()));
        wanted.push_back(&record);
    }
    const int formerCount = count();
    // The former records live until no row points to them any more.
    const QList<TranscriptRecordMetadata> former = m_records;
    removeRowsMissingFrom(positions);
    insertMissingRows(wanted);
    replaceRows(wanted);
    m_records = records;
    if (count() != formerCount) {
        emit countChanged();
    }
}

/// Also removes rows that are to stand elsewhere.
void TranscriptLibraryModel::removeRowsMissingFrom(const QHash<QUuid, int> &positions)
{
    std::vector<bool> stays;
    stays.reserve(m_rows.size());
    int last = -1;
    for (const TranscriptRecordMetadata *record : m_rows) {
        const int position = positions.value(record->id, -1);
        stays.push_back(position > last);
        last = std::max(last, position);
    }
    for (int end = count(); end > 0;) {
        if (stays[static_cast<std::size_t>(end - 1)]) {
            --end;
            continue;
        }
        int begin = end - 1;
        while (begin > 0 && !stays[static_cast<std::size_t>(begin - 1)]) {
            --begin;
        }
        beginRemoveRows({}, begin, end - 1);
        m_rows.erase(m_rows.begin() + begin, m_rows.begin() + end);
        endRemoveRows();
        end = begin;
    }
}

void TranscriptLibraryModel::insertMissingRows(const Rows &wanted)
{
    const auto isAt = [this](std::size_t row, const TranscriptRecordMetadata *record) {
        return row < m_rows.size() && m_rows[row]->id == record->id;
    };
    for (std::size_t begin = 0; begin < wanted.size(); ++begin) {
        if (isAt(begin, wanted[begin])) {
            continue;
        }
        std::size_t end = begin + 1;
        while (end < wanted.size() && !isAt(begin, wanted[end])) {
            ++end;
        }
        const auto position = [](const Rows &rows, std::size_t row) {
            return std::next(rows.begin(), static_cast<std::ptrdiff_t>(row));
        };
        beginInsertRows({}, static_cast<int>(begin), static_cast<int>(end - 1));
        m_rows.insert(position(m_rows, begin), position(wanted, begin), position(wanted, end));
        endInsertRows();
        begin = end - 1;
    }
}

/// Takes over what the rows show.
void TranscriptLibraryModel::replaceRows(const Rows &wanted)
{
    for (std::size_t row = 0; row < wanted.size(); ++row) {
        const TranscriptRecordMetadata *former = std::exchange(m_rows[row], wanted[row]);
        if (former != wanted[row] && !showSame(*former, *wanted[row])) {
            const QModelIndex changed = index(static_cast<int>(row));
            emit dataChanged(changed, changed, {Qt::DisplayRole, TitleRole, SubtitleRole});
        }
    }
}

} // namespace lumaphone
