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

/// Views follow so many runs of rows more quickly than they draw what is visible anew. A search among
/// thousands of records makes thousands of runs.
constexpr std::size_t maximumRuns = 64;

/// The number of runs of false.
std::size_t gaps(const std::vector<bool> &row)
{
    std::size_t count = 0;
    for (std::size_t i = 0; i < row.size(); ++i) {
        count += !row[i] && (i == 0 || row[i - 1]) ? 1 : 0;
    }
    return count;
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
    const std::vector<bool> stays = rowsThatStay(positions);
    if (runsOfChange(stays, positions) > maximumRuns) {
        replaceMiddle(wanted);
    } else {
        removeMissingRows(stays);
        insertMissingRows(wanted);
    }
    replaceRows(wanted);
    m_records = records;
    if (count() != formerCount) {
        emit countChanged();
    }
}

/// Which rows are still wanted, but for those that are to stand elsewhere.
std::vector<bool> TranscriptLibraryModel::rowsThatStay(const QHash<QUuid, int> &positions) const
{
    std::vector<bool> stays;
    stays.reserve(m_rows.size());
    int last = -1;
    for (const TranscriptRecordMetadata *record : m_rows) {
        const int position = positions.value(record->id, -1);
        stays.push_back(position > last);
        last = std::max(last, position);
    }
    return stays;
}

/// How many runs of rows come and go.
std::size_t TranscriptLibraryModel::runsOfChange(
    const std::vector<bool> &stays, const QHash<QUuid, int> &positions) const
{
    std::vector<bool> isThere(static_cast<std::size_t>(positions.size()));
    for (std::size_t row = 0; row < stays.size(); ++row) {
        if (stays[row]) {
            isThere[static_cast<std::size_t>(positions.value(m_rows[row]->id))] = true;
        }
    }
    return gaps(stays) + gaps(isThere);
}

/// Replaces all but the equal rows at the beginning and at the end.
void TranscriptLibraryModel::replaceMiddle(const Rows &wanted)
{
    const auto isSame = [](const TranscriptRecordMetadata *a, const TranscriptRecordMetadata *b) {
        return a->id == b->id;
    };
    const auto first
        = std::mismatch(m_rows.begin(), m_rows.end(), wanted.begin(), wanted.end(), isSame).first;
    const auto begin = first - m_rows.begin();
    const auto last = std::mismatch(
        m_rows.rbegin(), std::make_reverse_iterator(first), wanted.rbegin(), wanted.rend() - begin, isSame);
    const auto end = last.first.base() - m_rows.begin();
    if (begin < end) {
        beginRemoveRows({}, static_cast<int>(begin), static_cast<int>(end - 1));
        m_rows.erase(m_rows.begin() + begin, m_rows.begin() + end);
        endRemoveRows();
    }
    const auto wantedEnd = last.second.base() - wanted.begin();
    if (begin < wantedEnd) {
        beginInsertRows({}, static_cast<int>(begin), static_cast<int>(wantedEnd - 1));
        m_rows.insert(m_rows.begin() + begin, wanted.begin() + begin, wanted.begin() + wantedEnd);
        endInsertRows();
    }
}

void TranscriptLibraryModel::removeMissingRows(const std::vector<bool> &stays)
{
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
