#include "translation/GlossarySelection.h"

#include "base/TextSearch.h"

#include <algorithm>

namespace lumaphone {

QList<LumaphoneGlossaryTerm> glossaryTermsOccurring(
    const QList<LumaphoneGlossaryTerm> &terms, const QString &text)
{
    const text::TextSearch exact(text, text::Comparison::exact);
    const text::TextSearch folded(text, text::Comparison::ignoringCaseAndDiacritics);
    QList<LumaphoneGlossaryTerm> occurring;
    std::copy_if(terms.begin(), terms.end(), std::back_inserter(occurring),
        [&](const auto &term) { return (term.caseSensitive ? exact : folded).contains(term.source); });
    return occurring;
}

} // namespace lumaphone
