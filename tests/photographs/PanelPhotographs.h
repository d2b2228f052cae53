#pragma once

#include <QString>

namespace lumaphone::test {

/// The panel over a picture, in every theme and display mode.
void photographPanel(const QString &target);
/// The panel of somebody who reads: large texts in little room, several lines, held and scrolled, beside a
/// dialog.
void photographReading(const QString &target);

} // namespace lumaphone::test
