#pragma once

#include "base/Json.h"
#include "glossary/LumaphoneGlossaryTerm.h"

#include <QString>
#include <QUuid>

namespace lumaphone {

/// A glossary term that matched during a session, as it was then.
struct SavedGlossaryTerm
{
    QUuid id;
    QString source;
    QString target;
    LumaphoneGlossaryTermMode mode = LumaphoneGlossaryTermMode::preserve;

    bool operator==(const SavedGlossaryTerm &) const = default;
};

SavedGlossaryTerm savedGlossaryTerm(const LumaphoneGlossaryTerm &term);

json::Value toJson(const SavedGlossaryTerm &term);
/// All keys are required. Throws json::DecodingError.
SavedGlossaryTerm savedGlossaryTermFromJson(const json::Value &value);

} // namespace lumaphone
