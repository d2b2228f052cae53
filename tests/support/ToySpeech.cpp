#include "support/ToySpeech.h"

#include "support/SoundFile.h"

#include <QFile>
#include <QHash>

#include <algorithm>
#include <stdexcept>

namespace lumaphone::test {

namespace {

std::vector<QStringList> rowsOf(const QString &name)
{
    QFile file(toySpeechFile(name));
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::runtime_error((name + QStringLiteral(" is missing")).toStdString());
    }
    std::vector<QStringList> rows;
    while (!file.atEnd()) {
        rows.push_back(QString::fromUtf8(file.readLine()).trimmed().split(QLatin1Char('\t')));
    }
    return rows;
}

/// The `number`th recording of a folder, counted from one.
QString recording(const QString &beginning, qsizetype number)
{
    return toySpeechFile(QStringLiteral("%1%2.flac").arg(beginning).arg(number, 2, 10, QLatin1Char('0')));
}

} // namespace

QString toySpeechFile(const QString &name)
{
    return QStringLiteral(LUMAPHONE_TEST_DATA "/speech-toy/") + name;
}

std::vector<ToyPhrase> toyPhrases()
{
    std::vector<ToyPhrase> phrases;
    QHash<QString, qsizetype> counts;
    for (const QStringList &row : rowsOf(QStringLiteral("phrases.tsv"))) {
        const QString &language = row.at(0);
        const QString beginning = QStringLiteral("spoken/%1-").arg(language);
        phrases.push_back({language, row.at(2), recording(beginning, ++counts[language])});
    }
    return phrases;
}

std::vector<ToyPhrase> toyConversation()
{
    const std::vector<ToyPhrase> phrases = toyPhrases();
    std::vector<ToyPhrase> conversation;
    for (const QStringList &row : rowsOf(QStringLiteral("conversation.tsv"))) {
        const auto first = std::find_if(phrases.begin(), phrases.end(),
            [&row](const ToyPhrase &phrase) { return phrase.language == row.at(0); });
        ToyPhrase turn = *(first + row.at(1).toInt() - 1);
        turn.recording = recording(QStringLiteral("conversation/"), qsizetype(conversation.size()) + 1);
        conversation.push_back(turn);
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
