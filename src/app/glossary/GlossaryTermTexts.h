#pragma once

#include "glossary/LumaphoneGlossaryTerm.h"

#include <QString>

namespace lumaphone {

/// Label of a mode, for pickers and rows.
QString title(LumaphoneGlossaryTermMode mode);

/// What a row says below a term: its mode, and that upper and lower case count if they do.
QString termDetail(const LumaphoneGlossaryTerm &term);

/// Whether a term of these values would ever be used: it has a source and, if it is to be translated, a
/// target.
bool isUsableTerm(const QString &source, const QString &target, LumaphoneGlossaryTermMode mode);

} // namespace lumaphone
