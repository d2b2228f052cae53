#pragma once

#include "glossary/LumaphoneGlossaryTerm.h"

#include <QList>
#include <QString>

namespace lumaphone {

/// Hides the terms to be preserved from a translator that takes no instructions: they are replaced by
/// placeholder tokens before the translation and put back after it.
class LumaphoneGlossaryProtector
{
public:
    struct Replacement
    {
        QString token;
        QString value; ///< what stands for the token in the translation
        bool operator==(const Replacement &) const = default;
    };

    /// Terms in mode `preserve` are taken in the order given, not longest first; a token carries the index
    /// of its term among them. Other terms are ignored.
    LumaphoneGlossaryProtector(const QString &text, const QList<LumaphoneGlossaryTerm> &terms);

    const QString &protectedText() const { return m_protectedText; }
    /// One for every term that was found, in term order.
    const QList<Replacement> &replacements() const { return m_replacements; }

    /// `translation` with its tokens replaced by their values, in term order. Nothing closes a token, so
    /// that of index 1 is also the beginning of those of index 10 to 19: from the eleventh term on, values
    /// come out with a stray digit. A token that came back altered stays as it is.
    QString restored(const QString &translation) const;

private:
    QString m_protectedText;
    QList<Replacement> m_replacements;
};

} // namespace lumaphone
