#pragma once

#include "base/Record.h"
#include "glossary/LumaphoneGlossaryTerm.h"

#include <QHash>
#include <QList>
#include <QStringView>

#include <optional>
#include <utility>

/// The flat YAML list in which glossaries are exported, and hand-written files of the same shape.
///
/// An exported list reads back with the same source, target, mode, enabled and case-sensitivity values.
/// The format does not carry identities and notes; nor a term with an empty source, which is dropped when
/// read; nor a line feed inside a source or a target, which ends the value and makes the rest a line of
/// its own. Everything else comes back as it was: quotes, backslashes, carriage returns, blanks at the ends.
namespace lumaphone {

/// Reads a whole file's text. Never fails: lines and items that cannot be used are dropped. Identities are
/// fresh, values are not trimmed.
QList<LumaphoneGlossaryTerm> decodeYAML(QStringView text, const UuidGenerator &makeUuid);

/// The key and value of one line, split at its first colon, or none.
std::optional<std::pair<QString, QString>> parseYAMLKeyValue(QStringView line);

/// The term an item describes, or none without a target or with an empty source.
std::optional<LumaphoneGlossaryTerm> makeTerm(
    const QHash<QString, QString> &item, const UuidGenerator &makeUuid);

/// The text of all terms, in list order, without a line feed at its end.
QString encodeYAML(const QList<LumaphoneGlossaryTerm> &terms);

} // namespace lumaphone
