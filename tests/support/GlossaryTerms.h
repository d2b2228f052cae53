#pragma once

#include "glossary/LumaphoneGlossaryTerm.h"

#include <QList>
#include <QStringList>

#include <vector>

namespace lumaphone::test {

/// An enabled term that is not case-sensitive.
inline LumaphoneGlossaryTerm preserved(const QString &source, const QString &target = QString())
{
    return {.id = QUuid::createUuidV5(QUuid(), source),
        .source = source,
        .target = target,
        .mode = LumaphoneGlossaryTermMode::preserve,
        .note = QString(),
        .isEnabled = true,
        .caseSensitive = false};
}

inline LumaphoneGlossaryTerm translated(const QString &source, const QString &target)
{
    LumaphoneGlossaryTerm term = preserved(source, target);
    term.mode = LumaphoneGlossaryTermMode::translate;
    return term;
}

inline LumaphoneGlossaryTerm caseSensitive(LumaphoneGlossaryTerm term)
{
    term.caseSensitive = true;
    return term;
}

inline LumaphoneGlossaryTerm disabled(LumaphoneGlossaryTerm term)
{
    term.isEnabled = false;
    return term;
}

/// A list of UTF-8 literals.
inline QStringList strings(const std::vector<const char *> &literals)
{
    QStringList result;
    for (const char *literal : literals) {
        result.append(QString::fromUtf8(literal));
    }
    return result;
}

/// The sources of terms, in order.
inline QStringList sources(const QList<LumaphoneGlossaryTerm> &terms)
{
    QStringList result;
    for (const LumaphoneGlossaryTerm &term : terms) {
        result.append(term.source);
    }
    return result;
}

/// A term on one line, without its identity: "source|target|mode|note|enabled|case-sensitive".
inline QString line(const LumaphoneGlossaryTerm &term)
{
    const auto truth = [](bool value) {
        return value ? QStringLiteral("true") : QStringLiteral("false");
    };
    return QStringList {term.source, term.target, rawValue(term.mode), term.note, truth(term.isEnabled),
        truth(term.caseSensitive)}
        .join(QLatin1Char('|'));
}

inline QStringList lines(const QList<LumaphoneGlossaryTerm> &terms)
{
    QStringList result;
    for (const LumaphoneGlossaryTerm &term : terms) {
        result.append(line(term));
    }
    return result;
}

} // namespace lumaphone::test
