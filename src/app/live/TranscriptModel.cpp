#include "app/live/TranscriptModel.h"

#include "app/live/CaptionLinesModel.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTextBoundaryFinder>

#include <algorithm>

namespace lumaphone {

namespace {

using Extent = TranscriptSelection::Extent;

QVariantMap mark(int from, int to, TranscriptModel::MarkKind kind)
{
    return {{QStringLiteral("from"), from}, {QStringLiteral("to"), to}, {QStringLiteral("kind"), int(kind)}};
}

Extent columnOf(bool isInTranslation)
{
    return isInTranslation ? Extent::translation : Extent::source;
}

TextRange wordAt(const QString &text, int offset)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, text);
    finder.setPosition(std::min<qsizetype>(offset + 1, text.size()));
    const qsizetype start = std::max<qsizetype>(finder.toPreviousBoundary(), 0);
    finder.setPosition(start);
    const qsizetype end = finder.toNextBoundary();
    return {int(start), int(end < 0 ? text.size() : end)};
}

void copy(const QString &text)
{
    if (!text.isEmpty()) {
        QGuiApplication::clipboard()->setText(text);
    }
}

} // namespace

TranscriptModel::TranscriptModel(CaptionLinesModel &lines, QObject *parent)
    : QIdentityProxyModel(parent)
    , m_lines(lines)
{
    // What is marked follows before a view hears of the change.
    connect(&lines, &QAbstractItemModel::rowsAboutToBeInserted, this,
        [this](const QModelIndex &, int first) { makeRoom(first); });
    connect(&lines, &QAbstractItemModel::rowsInserted, this,
        [this](const QModelIndex &, int first, int last) { searchRows(first, last); });
    connect(&lines, &QAbstractItemModel::dataChanged, this,
        [this](const QModelIndex &first, const QModelIndex &last) {
            searchRows(first.row(), last.row());
            // What was looked at may be gone, and another in its place.
            if (const int row = foundRow(); row >= 0) {
                tellMarks(row, row);
            }
        });
    connect(&lines, &QAbstractItemModel::modelReset, this, &TranscriptModel::forget);
    setSourceModel(&lines);
}

QHash<int, QByteArray> TranscriptModel::roleNames() const
{
    QHash<int, QByteArray> names = QIdentityProxyModel::roleNames();
    names.insert({{SourceMarksRole, "sourceMarks"}, {TranslationMarksRole, "translationMarks"},
        {IsSelectedRole, "isSelected"}});
    return names;
}

QVariant TranscriptModel::data(const QModelIndex &index, int role) const
{
    switch (role) {
    case SourceMarksRole:
        return marks(index.row(), false);
    case TranslationMarksRole:
        return marks(index.row(), true);
    case IsSelectedRole: {
        const auto rows = m_selection.rows();
        return m_selection.anchorRow() && rows->first <= index.row() && index.row() <= rows->second;
    }
    default:
        return QIdentityProxyModel::data(index, role);
    }
}

QVariantList TranscriptModel::marks(int row, bool isInTranslation) const
{
    QVariantList marks;
    const Extent column = columnOf(isInTranslation);
    if (const auto rows = m_selection.rows(); rows && rows->first <= row && row <= rows->second) {
        const TextRange range = m_selection.in(row, column, int(textOf(row, column).size()));
        if (range.from < range.to) {
            marks.append(mark(range.from, range.to, Selected));
        }
    }
    const std::optional<TranscriptMatch> lookedAt = m_finder.current();
    for (const TranscriptMatch &match : m_finder.in(row)) {
        if (match.isInTranslation == isInTranslation) {
            marks.append(mark(match.from, match.to, match == lookedAt ? LookedAt : Found));
        }
    }
    return marks;
}

QString TranscriptModel::textOf(int row, Extent column) const
{
    if (row < 0 || row >= m_lines.count()) {
        return {};
    }
    return column == Extent::source ? m_lines.sourceText(row) : m_lines.translation(row);
}

bool TranscriptModel::hasTranslation(int row) const
{
    return row >= 0 && row < m_lines.count() && m_lines.hasTranslation(row);
}

void TranscriptModel::makeRoom(int row)
{
    m_selection.rowInserted(row);
    m_finder.rowInserted(row);
    if (m_currentRow >= row) {
        setCurrentRow(m_currentRow + 1);
    }
}

void TranscriptModel::searchRows(int first, int last)
{
    if (m_finder.pattern().isEmpty()) {
        return;
    }
    const int former = m_finder.count();
    for (int row = first; row <= last; ++row) {
        m_finder.searchRow(row, textOf(row, Extent::source), textOf(row, Extent::translation));
    }
    if (m_finder.count() != former) {
        emit foundChanged();
    }
}

void TranscriptModel::forget()
{
    m_selection.clear();
    setCurrentRow(-1);
    emit selectionChanged();
    const QString pattern = m_finder.pattern();
    m_finder.setPattern(pattern);
    searchRows(0, rowCount() - 1);
    emit foundChanged();
}

void TranscriptModel::setCurrentRow(int row)
{
    if (m_currentRow != row) {
        m_currentRow = row;
        emit currentRowChanged();
    }
}

template<typename Change> void TranscriptModel::changeSelection(Change change)
{
    const auto former = m_selection.rows();
    const bool wasEmpty = m_selection.isEmpty();
    change();
    const auto rows = m_selection.rows();
    if (former || rows) {
        const auto one = former.value_or(rows.value_or(std::pair(0, 0)));
        const auto other = rows.value_or(one);
        tellMarks(std::min(one.first, other.first), std::max(one.second, other.second));
    }
    if (wasEmpty != m_selection.isEmpty()) {
        emit selectionChanged();
    }
}

void TranscriptModel::tellMarks(int first, int last)
{
    if (first <= last) {
        emit dataChanged(
            index(first, 0), index(last, 0), {SourceMarksRole, TranslationMarksRole, IsSelectedRole});
    }
}

void TranscriptModel::goTo(int row)
{
    clearSelection();
    setCurrentRow(std::clamp(row, -1, rowCount() - 1));
}

void TranscriptModel::selectTo(int row)
{
    if (rowCount() == 0) {
        return;
    }
    const int head = std::clamp(row, 0, rowCount() - 1);
    changeSelection([&] {
        const int anchor = m_selection.anchorRow().value_or(m_currentRow < 0 ? head : m_currentRow);
        m_selection.begin(Extent::lines, {anchor, 0});
        m_selection.extend({head, 0});
    });
    setCurrentRow(head);
}

void TranscriptModel::selectAll()
{
    if (rowCount() > 0) {
        changeSelection([this] {
            m_selection.begin(Extent::lines, {0, 0});
            m_selection.extend({rowCount() - 1, 0});
        });
    }
}

void TranscriptModel::beginSelection(int row, bool isInTranslation, int offset)
{
    changeSelection([&] { m_selection.begin(columnOf(isInTranslation), {row, offset}); });
    setCurrentRow(row);
}

void TranscriptModel::extendSelection(int row, int offset)
{
    changeSelection([&] { m_selection.extend({row, offset}); });
    setCurrentRow(row);
}

void TranscriptModel::selectWord(int row, bool isInTranslation, int offset)
{
    const TextRange word = wordAt(textOf(row, columnOf(isInTranslation)), offset);
    beginSelection(row, isInTranslation, word.from);
    extendSelection(row, word.to);
}

void TranscriptModel::clearSelection()
{
    changeSelection([this] { m_selection.clear(); });
}

void TranscriptModel::offerSelection() const
{
    QClipboard &clipboard = *QGuiApplication::clipboard();
    if (hasSelection() && clipboard.supportsSelection()) {
        clipboard.setText(m_selection.text([this](int row, Extent column) { return textOf(row, column); }),
            QClipboard::Selection);
    }
}

void TranscriptModel::copySelection() const
{
    copy(m_selection.text([this](int row, Extent column) { return textOf(row, column); }));
}

void TranscriptModel::copyLine(int row) const
{
    TranscriptSelection line;
    line.begin(Extent::lines, {row, 0});
    copy(line.text([this](int of, Extent column) { return textOf(of, column); }));
}

void TranscriptModel::copySource(int row) const
{
    copy(textOf(row, Extent::source));
}

void TranscriptModel::copyTranslation(int row) const
{
    copy(textOf(row, Extent::translation));
}

int TranscriptModel::foundRow() const
{
    const std::optional<TranscriptMatch> lookedAt = m_finder.current();
    return lookedAt ? lookedAt->row : -1;
}

void TranscriptModel::search(const QString &text, int row)
{
    m_finder.setPattern(text);
    for (int line = 0; !text.isEmpty() && line < rowCount(); ++line) {
        m_finder.searchRow(line, textOf(line, Extent::source), textOf(line, Extent::translation));
    }
    m_finder.lookNear(row);
    tellMarks(0, rowCount() - 1);
    emit foundChanged();
}

void TranscriptModel::lookAtNext(int by)
{
    const int former = foundRow();
    m_finder.step(by);
    if (const int row = foundRow(); row >= 0) {
        tellMarks(former < 0 ? row : former, former < 0 ? row : former);
        tellMarks(row, row);
        emit foundChanged();
    }
}

} // namespace lumaphone
