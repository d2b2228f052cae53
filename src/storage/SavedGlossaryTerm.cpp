#include "storage/SavedGlossaryTerm.h"

#include "base/Record.h"
#include "storage/RecordCoding.h"

namespace lumaphone {

SavedGlossaryTerm savedGlossaryTerm(const LumaphoneGlossaryTerm &term)
{
    return {term.id, term.source, term.target, term.mode};
}

json::Value toJson(const SavedGlossaryTerm &term)
{
    return {
        {"id", json::fromText(uuidText(term.id))},
        {"source", json::fromText(term.source)},
        {"target", json::fromText(term.target)},
        {"mode", json::fromText(rawValue(term.mode))},
    };
}

SavedGlossaryTerm savedGlossaryTermFromJson(const json::Value &value)
{
    return {
        .id = json::uuid(value, "id"),
        .source = json::text(value, "source"),
        .target = json::text(value, "target"),
        .mode = recordcoding::choice(value, "mode", lumaphoneGlossaryTermMode),
    };
}

} // namespace lumaphone
