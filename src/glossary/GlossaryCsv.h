#pragma once

#include "base/Record.h"
#include "glossary/LumaphoneGlossaryTerm.h"

#include <QList>
#include <QStringList>
#include <QStringView>

#include <limits>

/// Glossaries in two or three columns: source, target and, if wanted, mode.
namespace lumaphone {

/// Reads a whole file's text. Never fails: lines of fewer than two fields are dropped, and so is a first
/// line that names the columns. Identities are fresh.
QList<LumaphoneGlossaryTerm> decodeCSV(QStringView text, const UuidGenerator &makeUuid);

/// The trimmed fields of one line, at least one, at most `maximumCount`. Quotes protect commas and are
/// dropped: a field cannot carry one.
QStringList parseCSVLine(QStringView line, qsizetype maximumCount = std::numeric_limits<qsizetype>::max());

} // namespace lumaphone
