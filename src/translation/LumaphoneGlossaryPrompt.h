#pragma once

#include "glossary/LumaphoneGlossaryTerm.h"

#include <QList>
#include <QString>

namespace lumaphone {

/// The glossary as an instruction to a language model.
struct LumaphoneGlossaryPrompt
{
    QList<LumaphoneGlossaryTerm> terms; ///< in the order given

    /// What tells two prompts apart: sources, targets and modes. Empty without terms.
    QString signature() const;
    /// The block for the system prompt; empty without terms, else it begins with a line feed.
    QString promptText() const;
};

} // namespace lumaphone
