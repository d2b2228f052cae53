#include "glossary/LumaphoneGlossaryTerm.h"

#include "base/Text.h"

namespace lumaphone {

bool LumaphoneGlossaryTerm::operator==(const LumaphoneGlossaryTerm &other) const
{
    return id == other.id && mode == other.mode && isEnabled == other.isEnabled
        && caseSensitive == other.caseSensitive && text::canonicallyEqual(source, other.source)
        && text::canonicallyEqual(target, other.target) && text::canonicallyEqual(note, other.note);
}

LumaphoneGlossaryTerm LumaphoneGlossaryTerm::cleaned() const
{
    LumaphoneGlossaryTerm copy = *this;
    copy.source = text::trimmed(source);
    copy.target = text::trimmed(target);
    copy.note = text::trimmed(note);
    return copy;
}

} // namespace lumaphone
