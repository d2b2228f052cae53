#pragma once

#include "glossary/LumaphoneGlossaryTermMode.h"

#include <QString>
#include <QUuid>

namespace lumaphone {

/// A term whose rendering in translations is fixed.
struct LumaphoneGlossaryTerm
{
    QUuid id; ///< kept across edits and imports
    QString source; ///< as it is spoken and recognised in the source language
    QString target; ///< the required rendering; may be empty for `preserve`
    LumaphoneGlossaryTermMode mode = LumaphoneGlossaryTermMode::preserve;
    QString note; ///< a free comment, never sent anywhere
    bool isEnabled = true; ///< disabled terms are kept but never used
    bool caseSensitive = false; ///< how `source` is matched in caption text

    /// Compares all fields; texts are equal under canonical equivalence.
    bool operator==(const LumaphoneGlossaryTerm &other) const;

    /// A copy whose source, target and note have no white space and line breaks at their ends.
    LumaphoneGlossaryTerm cleaned() const;
};

} // namespace lumaphone

Q_DECLARE_TYPEINFO(lumaphone::LumaphoneGlossaryTerm, Q_RELOCATABLE_TYPE);
