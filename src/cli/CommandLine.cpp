#include "cli/CommandLine.h"

#include "LumaphoneVersion.h"
#include "cli/HelpTexts.h"

#include <QCommandLineParser>

namespace lumaphone::cli {

namespace {

const QString helpOption = QStringLiteral("help");

/// Parses one command's arguments; the caller reads the parser only when the result is not a help text.
void parse(QCommandLineParser &parser, const QStringList &arguments)
{
    parser.addOption({{QStringLiteral("h"), helpOption}, {}});
    // The parser expects the program's name in front.
    if (!parser.parse(QStringList {QString()} + arguments)) {
        if (!parser.unknownOptionNames().isEmpty()) {
            throw UsageError(
                QStringLiteral("不認得的選項：%1").arg(parser.unknownOptionNames().constFirst()));
        }
        throw UsageError(QStringLiteral("選項的值不正確：%1").arg(parser.errorText()));
    }
}

OutputFormat outputFormat(const QString &name)
{
    if (name == QLatin1String("text")) {
        return OutputFormat::text;
    }
    if (name == QLatin1String("jsonl")) {
        return OutputFormat::jsonLines;
    }
    throw UsageError(QStringLiteral("不認得的輸出格式：%1（可用 text、jsonl）").arg(name));
}

AppleSystemSpeechLanguage language(const QString &name)
{
    if (const auto language = appleSystemSpeechLanguage(name)) {
        return *language;
    }
    QStringList names;
    for (const AppleSystemSpeechLanguage choice : allAppleSystemSpeechLanguages) {
        names.append(rawValue(choice));
    }
    throw UsageError(
        QStringLiteral("不認得的語言：%1（可用 %2）").arg(name, names.join(QStringLiteral("、"))));
}

CommandLine parseCaption(const QStringList &arguments)
{
    const QCommandLineOption languageOption(
        QStringLiteral("language"), {}, QStringLiteral("LANGUAGE"), QStringLiteral("automatic"));
    const QCommandLineOption formatOption(
        QStringLiteral("format"), {}, QStringLiteral("FORMAT"), QStringLiteral("text"));
    const QCommandLineOption realtimeOption(QStringLiteral("realtime"));
    QCommandLineParser parser;
    parser.addOptions({languageOption, formatOption, realtimeOption});
    parse(parser, arguments);
    if (parser.isSet(helpOption)) {
        return ShowText {captionHelp()};
    }

    const QStringList inputs = parser.positionalArguments();
    if (inputs.size() != 1 || inputs.constFirst().isEmpty()) {
        throw UsageError(QStringLiteral("caption 需要一個 INPUT：system、microphone 或音訊檔的路徑"));
    }
    CaptionCommandLine command;
    command.language = language(parser.value(languageOption));
    command.format = outputFormat(parser.value(formatOption));
    const bool isRealtime = parser.isSet(realtimeOption);
    if (inputs.constFirst() == QLatin1String("system")) {
        command.input = SystemAudioInput {};
    } else if (inputs.constFirst() == QLatin1String("microphone")) {
        command.input = MicrophoneInputChoice {};
    } else {
        command.input = SoundFileInput {inputs.constFirst(), isRealtime};
        return command;
    }
    if (isRealtime) {
        throw UsageError(QStringLiteral("--realtime 只能用於音訊檔"));
    }
    return command;
}

} // namespace

CommandLine parseCommandLine(const QStringList &arguments)
{
    if (arguments.isEmpty()) {
        throw UsageError(QStringLiteral("缺少指令"));
    }
    const QString &command = arguments.constFirst();
    if (command == QLatin1String("--help") || command == QLatin1String("-h")) {
        return ShowText {programHelp()};
    }
    if (command == QLatin1String("--version")) {
        return ShowText {QStringLiteral("lumaphone-cli %1\n").arg(QStringLiteral(LUMAPHONE_VERSION))};
    }
    if (command == QLatin1String("caption")) {
        return parseCaption(arguments.mid(1));
    }
    throw UsageError(QStringLiteral("不認得的指令：%1").arg(command));
}

} // namespace lumaphone::cli
