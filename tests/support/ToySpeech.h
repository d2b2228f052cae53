#pragma once

#include <QString>
#include <QStringList>

#include <cstdint>
#include <vector>

/// Small speech networks of the project's own, which know the phrases of tests/data/speech-toy, and a
/// synthetic voice that speaks them.
namespace lumaphone::test {

/// A file of tests/data/speech-toy.
QString toySpeechFile(const QString &name);

struct ToyPhrase
{
    QString language; ///< "ja", "en", "ko", "zh"
    QString spelling; ///< as the voice needs it
    QString text; ///< as the networks write it
};

/// All phrases the networks know.
std::vector<ToyPhrase> toyPhrases();

/// How the voice speaks.
struct ToyVoice
{
    QString variant; ///< such as "m3"; empty for the plain voice
    int wordsPerMinute = 175;
    int pitch = 50;
};

/// A phrase as 16 kHz mono sound, without silence around it. Throws std::runtime_error.
std::vector<std::int16_t> speak(const ToyPhrase &phrase, const ToyVoice &voice = {});

std::vector<std::int16_t> silence(double seconds);

} // namespace lumaphone::test
