#pragma once

#include "glossary/LumaphoneGlossaryTerm.h"

#include <QList>
#include <QString>

namespace lumaphone {

/// Those of `terms` whose source occurs in `text`, in list order. A case-sensitive source must occur as it
/// is; any other is searched without regard to case and diacritics. Blank sources never occur.
QList<LumaphoneGlossaryTerm> glossaryTermsOccurring(
    const QList<LumaphoneGlossaryTerm> &terms, const QString &text);

} // namespace lumaphone
