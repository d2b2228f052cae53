#pragma once

#include "base/Json.h"
#include "glossary/LumaphoneGlossaryTerm.h"

#include <QList>

namespace lumaphone {

/// The root of the glossary file: `{"terms": [...]}`, the terms in list order.
struct LumaphoneGlossaryDocument
{
    QList<LumaphoneGlossaryTerm> terms;

    /// UTF-8, pretty-printed, keys sorted at every level.
    QByteArray encoded() const;
    /// All seven keys of every term are required and the mode must be known; other keys are ignored.
    /// Throws json::DecodingError, which names the term and the key.
    static LumaphoneGlossaryDocument decoded(const json::Value &root);
};

/// The terms of a bare JSON array, as strict as the document. Throws json::DecodingError.
QList<LumaphoneGlossaryTerm> decodedGlossaryTerms(const json::Value &array);

} // namespace lumaphone
