#pragma once

#include "language/AppleSystemSpeechLanguage.h"

#include <QString>

#include <cstdint>
#include <vector>

namespace lumaphone::test {

/// A recording of human speech of which is known what is said.
struct SpokenRecording
{
    QString set; ///< recordings of one kind are counted together
    QString path; ///< a WAV file, 16 kHz, mono, 16 bits
    QString transcript;
    std::vector<std::int16_t> samples;
};

/// Recordings of one language, those of a set one after the other.
struct SpokenRecordings
{
    AppleSystemSpeechLanguage language = AppleSystemSpeechLanguage::english;
    std::vector<SpokenRecording> recordings;

    /// The sets in their order.
    QStringList sets() const;
    double seconds() const;
};

/// The English speech of Debian's package pocketsphinx-testdata. What is there without a header is written
/// into `folder` as WAV files. Throws std::runtime_error if the package is not installed.
SpokenRecordings debianRecordings(const QString &folder);

/// Those of a list with a line for each: locale, TAB, WAV file, TAB, transcript. A relative path begins at
/// the list's folder; the set is the name of the list. Throws std::runtime_error, with the line's number, for
/// what it does not know, and for a list of several languages.
SpokenRecordings listedRecordings(const QString &list);

} // namespace lumaphone::test
