#include "app/live/CaptionLinesModel.h"

#include "base/Text.h"
#include "session/SystemAudioCaptureController.h"

namespace lumaphone {

CaptionLinesModel::CaptionLinesModel(const SystemAudioCaptureController &controller, QObject *parent)
    : QAbstractListModel(parent)
    , m_controller(controller)
{
    using Controller = SystemAudioCaptureController;
    connect(&controller, &Controller::lineInserted, this, &CaptionLinesModel::insertRow);
    connect(&controller, &Controller::lineChanged, this, &CaptionLinesModel::changeRow);
    connect(&controller, &Controller::linesReset, this, &CaptionLinesModel::reset);
    reset();
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
        return line.translatedText;
    case SourceLanguageRole:
        return rawValue(line.sourceLanguage);
    case IsFinalRole:
        return line.isFinal;
    case IsPendingRole:
        return line.translatedText == pendingTranslationPlaceholder;
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
        {TimeRole, "time"}};
}

CaptionLinesModel::Row CaptionLinesModel::rowOf(qsizetype index) const
{
    const LumaphoneCaptionLine &line = m_controller.captionLines().at(index);
    return {.isPending = line.translatedText == pendingTranslationPlaceholder,
        .isTranslated = !text::trimmed(line.translatedText).isEmpty(),
        .isFinal = line.isFinal};
}

void CaptionLinesModel::insertRow(qsizetype index)
{
    beginInsertRows({}, int(index), int(index));
    const Row row = rowOf(index);
    m_rows.insert(m_rows.begin() + index, row);
    m_pending += row.isPending ? 1 : 0;
    m_translated += row.isTranslated ? 1 : 0;
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
    const Row former = row;
    row = rowOf(index);
    m_pending += int(row.isPending) - int(former.isPending);
    m_translated += int(row.isTranslated) - int(former.isTranslated);
    const bool hasFinished = row.isFinal && !former.isFinal;
    const QModelIndex changed = this->index(int(index));
    emit dataChanged(changed, changed);
    publishCounts();
    if (hasFinished) {
        emit lineFinished(int(index));
    }
}

void CaptionLinesModel::reset()
{
    beginResetModel();
    m_rows.clear();
    m_pending = 0;
    m_translated = 0;
    for (qsizetype index = 0; index < m_controller.captionLines().size(); ++index) {
        m_rows.push_back(rowOf(index));
        m_pending += m_rows.back().isPending ? 1 : 0;
        m_translated += m_rows.back().isTranslated ? 1 : 0;
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
    if (m_publishedTranslated != hasTranslatedText()) {
        m_publishedTranslated = hasTranslatedText();
        emit hasTranslatedTextChanged();
    }
}

} // namespace lumaphone
