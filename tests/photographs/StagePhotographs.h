#pragma once

#include <QString>

namespace lumaphone::test {

/// The stage in the smallest window, with every notice and one to three lines of translation.
void photographStage(const QString &target);
/// The level while a session listens, and the test of sound in each of its states.
void photographSound(const QString &target);

} // namespace lumaphone::test
