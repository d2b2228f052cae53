#include "bench/speech/QuietCaptions.h"

#include "bench/speech/QuietSounds.h"
#include "bench/speech/RunningCaptions.h"
#include "bench/speech/Waiting.h"
#include "capture/SoundFileReader.h"
#include "support/WavFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace lumaphone::bench {

namespace {

constexpr std::chrono::hours quietFileLimit(2);

double minutesOf(const QString &path)
{
    SoundFileReader reader(path);
    while (reader.readBlock().frames > 0) {
    }
    return std::chrono::duration<double, std::ratio<60>>(reader.endOfNextBlock()).count();
}

/// Also those that were shown only for a while.
QStringList linesIn(const ProgramUnderTest &program, AppleSystemSpeechLanguage language, const QString &path)
{
    RunningCaptions captions(program, path, language);
    captions.waitUntilEnded(quietFileLimit);
    QStringList lines;
    for (const test::CaptionHistory &line : captions.trace().lines()) {
        lines.append(line.text());
    }
    return lines;
}

} // namespace

std::vector<QuietCaptions> quietCaptions(
    const ProgramUnderTest &program, AppleSystemSpeechLanguage language, const QuietOptions &options)
{
    std::vector<QuietCaptions> all;
    const QTemporaryDir folder;
    const QDir place(options.keepFolder.isEmpty() ? folder.path() : options.keepFolder);
    if (!place.mkpath(QStringLiteral("."))) {
        throw BenchError(QStringLiteral("%1 cannot be made.").arg(place.path()));
    }
    for (const QuietSound &sound : quietSounds()) {
        tellProgress(sound.name);
        const QString path = place.filePath(sound.name + QStringLiteral(".wav"));
        test::writeWav(path, quietSamples(sound, options.minutes * 60, options.seed));
        all.push_back({sound.name, options.minutes, linesIn(program, language, path)});
        if (options.keepFolder.isEmpty()) {
            QFile::remove(path);
        }
    }
    for (const QString &file : options.files) {
        tellProgress(file);
        all.push_back({QFileInfo(file).fileName(), minutesOf(file), linesIn(program, language, file)});
    }
    return all;
}

} // namespace lumaphone::bench
