#pragma once

#include "glossary/LumaphoneGlossaryTerm.h"

#include <QAbstractListModel>
#include <QList>
#include <QtQml/qqmlregistration.h>

namespace lumaphone {

/// The glossary's terms in the user's order. A new list is taken over by its difference from the former one.
class GlossaryTermListModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The sheet's model has the one list.")
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role {
        SourceRole = Qt::UserRole + 1,
        TargetRole,
        DetailRole, ///< mode and case sensitivity, in words
        NoteRole,
        EnabledRole,
    };

    explicit GlossaryTermListModel(QObject *parent = nullptr);

    int count() const { return static_cast<int>(m_terms.size()); }
    const QList<LumaphoneGlossaryTerm> &terms() const { return m_terms; }
    void setTerms(const QList<LumaphoneGlossaryTerm> &terms);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

signals:
    void countChanged();

private:
    QList<LumaphoneGlossaryTerm> m_terms;
};

} // namespace lumaphone
