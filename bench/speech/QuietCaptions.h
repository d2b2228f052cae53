#pragma once

#include "bench/speech/ProgramUnderTest.h"
#include "bench/speech/TextTable.h"
#include "language/AppleSystemSpeechLanguage.h"

#include <QStringList>

namespace lumaphone::bench {

struct QuietOptions
{
    double minutes = 10; ///< of each kind of sound
    unsigned seed = 1;
    QString keepFolder; ///< where the sounds stay, to be listened to; empty: nowhere
    QStringList files; ///< sound files of one's own in which nobody speaks
};

/// The lines that a program wrote where nobody spoke.
struct QuietCaptions
{
    QString sound;
    double minutes = 0;
    QStringList lines;
};

/// Lets the program caption sounds in which nobody speaks, from files.
std::vector<QuietCaptions> quietCaptions(
    const ProgramUnderTest &program, AppleSystemSpeechLanguage language, const QuietOptions &options);

} // namespace lumaphone::bench
