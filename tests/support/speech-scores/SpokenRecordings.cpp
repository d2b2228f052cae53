#include "support/speech-scores/SpokenRecordings.h"

#include "language/TaiwanWording.h"
#include "support/WavFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QtEndian>

#include <algorithm>
#include <optional>
#include <stdexcept>

namespace lumaphone::test {

namespace {

constexpr double rateHz = 16000;

QDir debianFolder()
{
    return QDir(QStringLiteral("/usr/share/pocketsphinx/test/data"));
}

[[noreturn]] void fail(const QString &message)
{
    throw std::runtime_error(message.toStdString());
}

QByteArray contentOf(const QString &path, const QString &advice)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        fail(QStringLiteral("%1: %2%3").arg(path, file.errorString(), advice));
    }
    return file.readAll();
}

QByteArray debianFile(const QString &name)
{
    return contentOf(debianFolder().filePath(name),
        QStringLiteral(". The recordings are in Debian's package pocketsphinx-testdata"));
}

/// Lines such as: <s> five five  </s> (004)
void addTranscribed(const QString &set, const QString &transcriptions, SpokenRecordings &to)
{
    static const QRegularExpression row(QStringLiteral("<s>(.*)</s> \\((\\S+)\\)"));
    const QString lines = QString::fromUtf8(debianFile(set + QLatin1Char('/') + transcriptions));
    for (auto matches = row.globalMatch(lines); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        const QString path = debianFolder().filePath(QStringLiteral("%1/%2.wav").arg(set, match.captured(2)));
        to.recordings.push_back({set, path, match.captured(1).simplified(), samplesOfWav(path)});
    }
}

/// Samples without a header.
void addRaw(const QString &set, const QString &name, const QString &transcript, const QString &folder,
    SpokenRecordings &to)
{
    const QByteArray bytes = debianFile(name);
    std::vector<std::int16_t> samples(static_cast<std::size_t>(bytes.size()) / 2);
    qFromLittleEndian<qint16>(bytes.constData(), static_cast<qsizetype>(samples.size()), samples.data());
    const QString path = QDir(folder).filePath(QFileInfo(name).completeBaseName() + QStringLiteral(".wav"));
    writeWav(path, samples);
    to.recordings.push_back({set, path, transcript, std::move(samples)});
}

std::optional<AppleSystemSpeechLanguage> languageOf(const QString &locale)
{
    const auto languages = recognitionCandidates(AppleSystemSpeechLanguage::automatic);
    const auto found = std::find_if(languages.begin(), languages.end(),
        [&locale](AppleSystemSpeechLanguage language) { return localeIdentifier(language) == locale; });
    return found == languages.end() ? std::nullopt : std::optional(*found);
}

} // namespace

QStringList SpokenRecordings::sets() const
{
    QStringList names;
    for (const SpokenRecording &recording : recordings) {
        if (!names.contains(recording.set)) {
            names.append(recording.set);
        }
    }
    return names;
}

double SpokenRecordings::seconds() const
{
    double sum = 0;
    for (const SpokenRecording &recording : recordings) {
        sum += static_cast<double>(recording.samples.size()) / rateHz;
    }
    return sum;
}

SpokenRecordings debianRecordings(const QString &folder)
{
    SpokenRecordings all;
    addTranscribed(QStringLiteral("librivox"), QStringLiteral("transcription"), all);
    addTranscribed(QStringLiteral("cards"), QStringLiteral("cards.transcription"), all);
    // What is said follows from the grammar, from the name and from the key to such names. Left out are
    // numbers.raw, which comes without a transcript and is ambiguous ("four or six", "four six"), and the
    // rest of tidigits, which are features of 8 kHz sound, not sound.
    const auto commands = QStringLiteral("commands");
    addRaw(commands, QStringLiteral("goforward.raw"), QStringLiteral("go forward ten meters"), folder, all);
    addRaw(commands, QStringLiteral("something.raw"), QStringLiteral("go somewhere and do something"), folder,
        all);
    addRaw(commands, QStringLiteral("tidigits/dhd.2934z.raw"), QStringLiteral("two nine three four zero"),
        folder, all);
    return all;
}

SpokenRecordings listedRecordings(const QString &list)
{
    SpokenRecordings all;
    std::optional<AppleSystemSpeechLanguage> first;
    int number = 0;
    for (const QByteArray &line : contentOf(list, QString()).split('\n')) {
        ++number;
        if (line.trimmed().isEmpty()) {
            continue;
        }
        const QStringList fields = QString::fromUtf8(line).split(QLatin1Char('\t'));
        const auto place = QStringLiteral("%1, line %2: ").arg(list).arg(number);
        if (fields.size() != 3) {
            fail(place + QStringLiteral("a line is a locale, a WAV file and a transcript, between TABs"));
        }
        const auto language = languageOf(fields[0]);
        if (!language) {
            fail(place + QStringLiteral("unknown locale \"%1\"").arg(fields[0]));
        }
        if (first && *first != *language) {
            fail(
                place + QStringLiteral("another language than before: every language has a list of its own"));
        }
        first = language;
        const QString path = QFileInfo(list).dir().filePath(fields[1]);
        contentOf(path, QString());
        // Mandarin is recognised in the characters of Taiwan, whatever the transcript is written in.
        const QString transcript = *language == AppleSystemSpeechLanguage::mandarin
            ? TaiwanWording(WrittenChinese::simplified).rewrite(fields[2].trimmed())
            : fields[2].trimmed();
        all.recordings.push_back({QFileInfo(list).completeBaseName(), path, transcript, samplesOfWav(path)});
    }
    if (!first) {
        fail(list + QStringLiteral(": no recording"));
    }
    all.language = *first;
    return all;
}

} // namespace lumaphone::test
