#include "app/glossary/GlossaryTermListModel.h"

#include "app/glossary/GlossaryTermTexts.h"

#include <algorithm>

namespace lumaphone {

GlossaryTermListModel::GlossaryTermListModel(QObject *parent)
    : QAbstractListModel(parent)
{
}

void GlossaryTermListModel::setTerms(const QList<LumaphoneGlossaryTerm> &terms)
{
    const qsizetype formerCount = m_terms.size();
    const qsizetype shorter = std::min(formerCount, terms.size());
    // Only what lies between the common beginning and the common end has changed.
    const auto differing = std::mismatch(m_terms.cbegin(), m_terms.cbegin() + shorter, terms.cbegin());
    const qsizetype head = differing.first - m_terms.cbegin();
    qsizetype tail = 0;
    while (tail < shorter - head && m_terms[formerCount - 1 - tail] == terms[terms.size() - 1 - tail]) {
        ++tail;
    }
    const auto row = [](qsizetype position) {
        return static_cast<int>(position);
    };
    const qsizetype changed = shorter - head - tail;
    if (changed > 0) {
        std::copy_n(terms.cbegin() + head, changed, m_terms.begin() + head);
        emit dataChanged(index(row(head)), index(row(head + changed - 1)));
    }
    const qsizetype end = head + changed;
    if (formerCount > terms.size()) {
        const qsizetype surplus = formerCount - terms.size();
        beginRemoveRows({}, row(end), row(end + surplus - 1));
        m_terms.remove(end, surplus);
        endRemoveRows();
    } else if (formerCount < terms.size()) {
        const qsizetype added = terms.size() - formerCount;
        beginInsertRows({}, row(end), row(end + added - 1));
        m_terms = terms;
        endInsertRows();
    }
    if (formerCount != terms.size()) {
        emit countChanged();
    }
}

int GlossaryTermListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant GlossaryTermListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    const LumaphoneGlossaryTerm &term = m_terms[index.row()];
    switch (role) {
    case SourceRole:
    case Qt::DisplayRole:
        return term.source;
    case TargetRole:
        return term.target;
    case DetailRole:
        return termDetail(term);
    case NoteRole:
        return term.note;
    case EnabledRole:
        return term.isEnabled;
    default:
        return {};
    }
}

QHash<int, QByteArray> GlossaryTermListModel::roleNames() const
{
    return {{SourceRole, "source"}, {TargetRole, "target"}, {DetailRole, "detail"}, {NoteRole, "note"},
        {EnabledRole, "isEnabled"}};
}

} // namespace lumaphone
