#include "app/live/CaptionLinesModel.h"

#include "app/live/LiveTexts.h"
#include "base/Text.h"
#include "session/SystemAudioCaptureController.h"

#include <utility>

namespace lumaphone {

CaptionLinesModel::CaptionLinesModel(const SystemAudioCaptureController &controller, QObject *parent)
    : QAbstractListModel(parent)
    , m_controller(controller)
{
    using Controller = SystemAudioCaptureController;
    connect(&controller, &Controller::lineInserted, this, &CaptionLinesModel::insertRow);
    connect(&controller, &Controller::lineChanged, this, &CaptionLinesModel::changeRow);
    connect(&controller, &Controller::linesReset, this, &CaptionLinesModel::reset);
    connect(&controller, &Controller::translationStatesChanged, this,
        &CaptionLinesModel::updateTranslationStates);
    reset();
}

const QString &CaptionLinesModel::sourceText(int row) const
{
    return m_controller.captionLines().at(row).sourceText;
}

QString CaptionLinesModel::translation(int row) const
{
    return hasTranslation(row) ? m_controller.captionLines().at(row).translatedText : QString();
}

bool CaptionLinesModel::hasTranslation(int row) const
{
    const TranslationState state = m_rows.at(size_t(row)).translation;
    return state != TranslationState::pending && state != TranslationState::failed;
}

int CaptionLinesModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant CaptionLinesModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= count()) {
        return {};
    }
    const LumaphoneCaptionLine &line = m_controller.captionLines().at(index.row());
    switch (role) {
    case SourceTextRole:
        return line.sourceText;
    case TranslatedTextRole:
        return m_rows[size_t(index.row())].translation == TranslationState::failed ? livetexts::untranslated()
                                                                                   : line.translatedText;
    case SourceLanguageRole:
        return rawValue(line.sourceLanguage);
    case IsFinalRole:
        return line.isFinal;
    case IsPendingRole:
        return m_rows[size_t(index.row())].translation == TranslationState::pending;
    case IsFailedRole:
        return m_rows[size_t(index.row())].translation == TranslationState::failed;
    case FailureRole:
        return m_controller.translationOf(line).error;
    case TimeRole:
        return line.createdAt.toLocalTime().toString(QStringLiteral("HH:mm:ss"));
    default:
        return {};
    }
}

QHash<int, QByteArray> CaptionLinesModel::roleNames() const
{
    return {{SourceTextRole, "sourceText"}, {TranslatedTextRole, "translatedText"},
        {SourceLanguageRole, "sourceLanguage"}, {IsFinalRole, "isFinal"}, {IsPendingRole, "isPending"},
        {IsFailedRole, "isFailed"}, {FailureRole, "failure"}, {TimeRole, "time"}};
}

CaptionLinesModel::Row CaptionLinesModel::rowOf(qsizetype index) const
{
    const LumaphoneCaptionLine &line = m_controller.captionLines().at(index);
    return {.translation = m_controller.translationOf(line).state,
        .isTranslated = !text::trimmed(line.translatedText).isEmpty(),
        .isFinal = line.isFinal};
}

void CaptionLinesModel::count(const Row &row, int times)
{
    m_pending += row.translation == TranslationState::pending ? times : 0;
    m_failed += row.translation == TranslationState::failed ? times : 0;
    m_translated += row.isTranslated ? times : 0;
}

void CaptionLinesModel::insertRow(qsizetype index)
{
    beginInsertRows({}, int(index), int(index));
    const Row row = rowOf(index);
    m_rows.insert(m_rows.begin() + index, row);
    count(row, 1);
    endInsertRows();
    emit countChanged();
    publishCounts();
    if (row.isFinal) {
        emit lineFinished(int(index));
    }
}

void CaptionLinesModel::changeRow(qsizetype index)
{
    Row &row = m_rows.at(size_t(index));
    const Row former = std::exchange(row, rowOf(index));
    count(former, -1);
    count(row, 1);
    const bool hasFinished = row.isFinal && !former.isFinal;
    const QModelIndex changed = this->index(int(index));
    emit dataChanged(changed, changed);
    publishCounts();
    if (hasFinished) {
        emit lineFinished(int(index));
    }
}

void CaptionLinesModel::updateTranslationStates()
{
    for (size_t row = 0; row < m_rows.size(); ++row) {
        // What has a translation keeps it until its text changes, which is told for itself.
        const TranslationState former = m_rows[row].translation;
        const bool mayDiffer = former != TranslationState::arrived;
        const auto &line = m_controller.captionLines().at(qsizetype(row));
        if (mayDiffer && m_controller.translationOf(line).state != former) {
            changeRow(qsizetype(row));
        }
    }
}

void CaptionLinesModel::reset()
{
    beginResetModel();
    m_rows.clear();
    m_pending = 0;
    m_failed = 0;
    m_translated = 0;
    for (qsizetype index = 0; index < m_controller.captionLines().size(); ++index) {
        m_rows.push_back(rowOf(index));
        count(m_rows.back(), 1);
    }
    endResetModel();
    emit countChanged();
    publishCounts();
}

void CaptionLinesModel::publishCounts()
{
    if (m_publishedPending != hasPendingTranslation()) {
        m_publishedPending = hasPendingTranslation();
        emit hasPendingTranslationChanged();
    }
    if (m_publishedFailed != m_failed) {
        m_publishedFailed = m_failed;
        emit failedCountChanged();
    }
    if (m_publishedTranslated != hasTranslatedText()) {
        m_publishedTranslated = hasTranslatedText();
        emit hasTranslatedTextChanged();
    }
}

} // namespace lumaphone
