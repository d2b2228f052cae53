#pragma once

#include "base/Record.h"
#include "glossary/LumaphoneGlossaryTerm.h"

#include <QByteArray>
#include <QList>
#include <QString>

namespace lumaphone {

/// Reads a file of terms in the format its extension names: json, yaml, yml or csv, in any case. Throws
/// FileError, PlatformError for bytes that are not UTF-8, LumaphoneGlossaryError for any other extension,
/// and json::DecodingError.
QList<LumaphoneGlossaryTerm> decodeTerms(const QString &path, const UuidGenerator &makeUuid);

/// Reads `{"terms": [...]}` or a bare array of terms, both in the strict form of the glossary file. Throws
/// json::DecodingError.
QList<LumaphoneGlossaryTerm> decodeGlossaryJson(const QByteArray &bytes);

} // namespace lumaphone
