#pragma once

#include <QString>
#include <QStringList>

#include <cstdint>
#include <vector>

/// Small speech networks of the project's own, which know the phrases of tests/data/speech-toy, and
/// recordings of a synthetic voice that speaks them.
namespace lumaphone::test {

/// A file of tests/data/speech-toy.
QString toySpeechFile(const QString &name);

struct ToyPhrase
{
    QString language; ///< "ja", "en", "ko", "zh"
    QString text; ///< as the networks write it
    QString recording; ///< a file
};

/// All phrases the networks know, in the plain voice.
std::vector<ToyPhrase> toyPhrases();

/// So many phrases of each language, the languages by turns.
std::vector<ToyPhrase> toyConversation(std::size_t phrasesPerLanguage);

/// A phrase as 16 kHz mono sound, without silence around it.
std::vector<std::int16_t> speak(const ToyPhrase &phrase);

std::vector<std::int16_t> silence(double seconds);

} // namespace lumaphone::test
