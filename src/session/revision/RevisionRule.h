#pragma once

#include <QList>
#include <QString>

/// The built-in rule that tells a corrected text from a new utterance: pure functions, shared by the program
/// and its helper.
namespace lumaphone {

/// Whether `incoming` is a revision of `current`: the same utterance, recognised again.
bool fallbackIsRevisionOfCurrentPartial(const QString &current, const QString &incoming);

} // namespace lumaphone
