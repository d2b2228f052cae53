#include "translation/LumaphoneGlossaryProtector.h"

#include "base/TextSearch.h"

namespace lumaphone {

using text::Comparison;
using text::TextSearch;

LumaphoneGlossaryProtector::LumaphoneGlossaryProtector(
    const QString &text, const QList<LumaphoneGlossaryTerm> &terms)
    : m_protectedText(text)
{
    int index = 0;
    for (const LumaphoneGlossaryTerm &term : terms) {
        if (term.mode != LumaphoneGlossaryTermMode::preserve) {
            continue;
        }
        const QString token = QStringLiteral("LUMAPHON_TERM_%1").arg(index++);
        const TextSearch search(
            m_protectedText, term.caseSensitive ? Comparison::exact : Comparison::ignoringCaseAndDiacritics);
        if (search.contains(term.source)) {
            m_protectedText = search.replacing(term.source, token);
            m_replacements.append({token, term.target.isEmpty() ? term.source : term.target});
        }
    }
}

QString LumaphoneGlossaryProtector::restored(const QString &translation) const
{
    QString text = translation;
    for (const Replacement &replacement : m_replacements) {
        text = TextSearch(text, Comparison::exact).replacing(replacement.token, replacement.value);
    }
    return text;
}

} // namespace lumaphone
