#include "app/library/TranscriptLinesModel.h"

namespace lumaphone {

TranscriptLinesModel::TranscriptLinesModel(QObject *parent)
    : QAbstractListModel(parent)
{
}

void TranscriptLinesModel::setLines(const QList<SavedTranscriptLine> &lines)
{
    if (m_lines == lines) {
        return;
    }
    const bool changesCount = m_lines.size() != lines.size();
    beginResetModel();
    m_lines = lines;
    endResetModel();
    if (changesCount) {
        emit countChanged();
    }
}

int TranscriptLinesModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant TranscriptLinesModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    const SavedTranscriptLine &line = m_lines[index.row()];
    switch (role) {
    case SourceTextRole:
    case Qt::DisplayRole:
        return line.sourceText;
    case TranslatedTextRole:
        return line.translatedText;
    case NumberRole:
        return index.row() + 1;
    case SourceLanguageRole:
        return rawValue(line.sourceLanguage);
    default:
        return {};
    }
}

bool TranscriptLinesModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    const bool isText = role == SourceTextRole || role == TranslatedTextRole;
    if (!isText || !index.isValid()) {
        return false;
    }
    SavedTranscriptLine &line = m_lines[index.row()];
    QString &text = role == SourceTextRole ? line.sourceText : line.translatedText;
    const QString changed = value.toString();
    if (text == changed) {
        return true;
    }
    text = changed;
    QList<int> roles {role};
    if (role == SourceTextRole) {
        roles.append(Qt::DisplayRole);
    }
    emit dataChanged(index, index, roles);
    emit edited();
    return true;
}

Qt::ItemFlags TranscriptLinesModel::flags(const QModelIndex &index) const
{
    return QAbstractListModel::flags(index) | (index.isValid() ? Qt::ItemIsEditable : Qt::NoItemFlags);
}

QHash<int, QByteArray> TranscriptLinesModel::roleNames() const
{
    return {{SourceTextRole, "sourceText"}, {TranslatedTextRole, "translatedText"}, {NumberRole, "number"},
        {SourceLanguageRole, "sourceLanguage"}};
}

} // namespace lumaphone
