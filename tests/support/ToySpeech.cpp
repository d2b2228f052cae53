#include "support/ToySpeech.h"

#include "support/SoundFile.h"

#include <QFile>
#include <QHash>

#include <algorithm>
#include <stdexcept>

namespace lumaphone::test {

namespace {

constexpr std::size_t languageCount = 4;

} // namespace

QString toySpeechFile(const QString &name)
{
    return QStringLiteral(LUMAPHONE_TEST_DATA "/speech-toy/") + name;
}

std::vector<ToyPhrase> toyPhrases()
{
    QFile file(toySpeechFile(QStringLiteral("phrases.tsv")));
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::runtime_error("phrases.tsv is missing");
    }
    std::vector<ToyPhrase> phrases;
    QHash<QString, int> counts;
    while (!file.atEnd()) {
        const QStringList fields = QString::fromUtf8(file.readLine()).trimmed().split(QLatin1Char('\t'));
        const QString &language = fields.at(0);
        const int number = ++counts[language];
        phrases.push_back({language, fields.at(2),
            toySpeechFile(
                QStringLiteral("spoken/%1-%2.flac").arg(language).arg(number, 2, 10, QLatin1Char('0')))});
    }
    return phrases;
}

std::vector<ToyPhrase> toyConversation(std::size_t phrasesPerLanguage)
{
    const std::vector<ToyPhrase> phrases = toyPhrases();
    const std::size_t perLanguage = phrases.size() / languageCount;
    std::vector<ToyPhrase> conversation;
    for (std::size_t i = 0; i < phrasesPerLanguage; ++i) {
        for (std::size_t language = 0; language < languageCount; ++language) {
            conversation.push_back(phrases.at(language * perLanguage + i));
        }
    }
    return conversation;
}

std::vector<std::int16_t> speak(const ToyPhrase &phrase)
{
    return samplesOfSoundFile(phrase.recording);
}

std::vector<std::int16_t> silence(double seconds)
{
    return std::vector<std::int16_t>(static_cast<std::size_t>(seconds * 16000));
}

} // namespace lumaphone::test
