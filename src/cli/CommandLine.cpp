#include "cli/CommandLine.h"

#include "LumaphoneVersion.h"
#include "base/Text.h"
#include "cli/Arguments.h"
#include "cli/HelpTexts.h"

namespace lumaphone::cli {

namespace {

CommandLine parseCaption(const QStringList &list)
{
    const Arguments arguments(list,
        {{QStringLiteral("language"), QStringLiteral("LANGUAGE"), QStringLiteral("automatic"), {}},
            {QStringLiteral("format"), QStringLiteral("FORMAT"), QStringLiteral("text"), {}},
            {QStringLiteral("translate"), QStringLiteral("HOW"), {}, {}},
            {QStringLiteral("draft"), {}, {}, {}}, {QStringLiteral("realtime"), {}, {}, {}}});
    if (arguments.wantsHelp()) {
        return ShowText {captionHelp()};
    }
    arguments.requirePositional(
        1, QStringLiteral("caption 需要一個 INPUT：system、microphone 或音訊檔的路徑"));

    CaptionCommandLine command;
    command.language
        = arguments.choice(QStringLiteral("language"), allSpeechLanguages(), QStringLiteral("語言"));
    command.format = arguments.choice(QStringLiteral("format"), allOutputFormats, QStringLiteral("輸出格式"));
    if (arguments.isSet(QStringLiteral("translate"))) {
        command.translation = arguments.choice(
            QStringLiteral("translate"), allTranslationChoices, QStringLiteral("翻譯方式"));
    }
    command.keepsDraft = arguments.isSet(QStringLiteral("draft"));
    const QString &input = arguments.positional().constFirst();
    const bool isRealtime = arguments.isSet(QStringLiteral("realtime"));
    if (input == QLatin1String("system")) {
        command.input = SystemAudioInput {};
    } else if (input == QLatin1String("microphone")) {
        command.input = MicrophoneInputChoice {};
    } else {
        command.input = SoundFileInput {input, isRealtime};
        return command;
    }
    if (isRealtime) {
        throw UsageError(QStringLiteral("--realtime 只能用於音訊檔"));
    }
    return command;
}

/// The word behind a command such as "settings"; throws UsageError with `usage` if there is none.
QString action(const Arguments &arguments, const QString &usage)
{
    if (arguments.positional().isEmpty()) {
        throw UsageError(usage);
    }
    return arguments.positional().constFirst();
}

CommandLine parseModels(const QStringList &list)
{
    const Arguments arguments(list,
        {{QStringLiteral("from"), QStringLiteral("PATH"), {}, {}},
            {QStringLiteral("accept-licence"), {}, {}, {}}});
    if (arguments.wantsHelp()) {
        return ShowText {modelsHelp()};
    }
    const QString usage
        = QStringLiteral("models 的用法：list、install PAIR…、remove PAIR…、verify [PAIR…] 或 licence PAIR…");
    const QString verb = action(arguments, usage);
    const QStringList names = arguments.positional().mid(1);
    const bool isInstall = verb == QLatin1String("install");
    if (!isInstall
        && (arguments.isSet(QStringLiteral("from")) || arguments.isSet(QStringLiteral("accept-licence")))) {
        throw UsageError(QStringLiteral("--from 和 --accept-licence 只能用於 models install"));
    }
    if (names.contains(QString())) {
        throw UsageError(usage);
    }
    if (verb == QLatin1String("list") && names.isEmpty()) {
        return ModelsList {};
    }
    if (isInstall && !names.isEmpty()) {
        if (arguments.isSet(QStringLiteral("from")) && arguments.value(QStringLiteral("from")).isEmpty()) {
            throw UsageError(QStringLiteral("--from 需要資料夾或檔案"));
        }
        return ModelsInstall {names, arguments.value(QStringLiteral("from")),
            arguments.isSet(QStringLiteral("accept-licence"))};
    }
    if (verb == QLatin1String("remove") && !names.isEmpty()) {
        return ModelsRemove {names};
    }
    if (verb == QLatin1String("verify")) {
        return ModelsVerify {names};
    }
    if (verb == QLatin1String("licence") && !names.isEmpty()) {
        return ModelsLicence {names};
    }
    throw UsageError(usage);
}

CommandLine parseSettings(const QStringList &list)
{
    const Arguments arguments(list, {});
    if (arguments.wantsHelp()) {
        return ShowText {settingsHelp()};
    }
    const QString usage = QStringLiteral("settings 的用法：list、get KEY 或 set KEY VALUE");
    const QString verb = action(arguments, usage);
    const QStringList &words = arguments.positional();
    if (verb == QLatin1String("list") && words.size() == 1) {
        return SettingsList {};
    }
    if (verb == QLatin1String("get") && words.size() == 2) {
        return SettingsGet {words[1]};
    }
    if (verb == QLatin1String("set") && words.size() == 3) {
        return SettingsSet {words[1], words[2]};
    }
    throw UsageError(usage);
}

CommandLine parseKey(const QStringList &list)
{
    const Arguments arguments(list, {});
    if (arguments.wantsHelp()) {
        return ShowText {keyHelp()};
    }
    const QString usage = QStringLiteral("key 的用法：set、clear 或 status；API 金鑰由標準輸入讀取");
    arguments.requirePositional(1, usage);
    const QString verb = action(arguments, usage);
    if (verb == QLatin1String("set")) {
        return KeySet {};
    }
    if (verb == QLatin1String("clear")) {
        return KeyClear {};
    }
    if (verb == QLatin1String("status")) {
        return KeyStatus {};
    }
    throw UsageError(usage);
}

CommandLine parseDoctor(const QStringList &list)
{
    const Arguments arguments(list, {});
    if (arguments.wantsHelp()) {
        return ShowText {doctorHelp()};
    }
    arguments.requirePositional(0, QStringLiteral("doctor 不需要參數"));
    return Doctor {};
}

CommandLine parseDraft(const QStringList &list)
{
    const Arguments arguments(list, {});
    if (arguments.wantsHelp()) {
        return ShowText {draftHelp()};
    }
    const QString usage = QStringLiteral("draft 的用法：show 或 discard");
    arguments.requirePositional(1, usage);
    const QString verb = action(arguments, usage);
    if (verb == QLatin1String("show")) {
        return DraftShow {};
    }
    if (verb == QLatin1String("discard")) {
        return DraftDiscard {};
    }
    throw UsageError(usage);
}

LumaphoneGlossaryTermMode termMode(const Arguments &arguments)
{
    const bool hasTarget = arguments.isSet(QStringLiteral("target"));
    if (!arguments.isSet(QStringLiteral("mode"))) {
        return hasTarget ? LumaphoneGlossaryTermMode::translate : LumaphoneGlossaryTermMode::preserve;
    }
    const auto mode
        = arguments.choice(QStringLiteral("mode"), allLumaphoneGlossaryTermModes, QStringLiteral("處理方式"));
    if (mode == LumaphoneGlossaryTermMode::translate && !hasTarget) {
        throw UsageError(QStringLiteral("translate 需要 --target"));
    }
    return mode;
}

CommandLine parseGlossary(const QStringList &list)
{
    const Arguments arguments(list,
        {{QStringLiteral("target"), QStringLiteral("TEXT"), {}, {}},
            {QStringLiteral("mode"), QStringLiteral("MODE"), {}, {}},
            {QStringLiteral("note"), QStringLiteral("TEXT"), {}, {}},
            {QStringLiteral("case-sensitive"), {}, {}, {}}});
    if (arguments.wantsHelp()) {
        return ShowText {glossaryHelp()};
    }
    const QString usage = QStringLiteral("glossary 的用法：list、add SOURCE、remove SOURCE、enable SOURCE、"
                                         "disable SOURCE、import FILE 或 export FILE");
    const QString verb = action(arguments, usage);
    if (verb == QLatin1String("list")) {
        arguments.requirePositional(1, usage);
        return GlossaryList {};
    }
    arguments.requirePositional(2, usage);
    if (verb == QLatin1String("import")) {
        return GlossaryImport {arguments.positional().at(1)};
    }
    if (verb == QLatin1String("export")) {
        return GlossaryExport {arguments.positional().at(1)};
    }
    const QString source = text::trimmed(arguments.positional().at(1));
    if (source.isEmpty()) {
        throw UsageError(usage);
    }
    if (verb == QLatin1String("add")) {
        return GlossaryAdd {source, arguments.value(QStringLiteral("target")), termMode(arguments),
            arguments.value(QStringLiteral("note")), arguments.isSet(QStringLiteral("case-sensitive"))};
    }
    if (verb == QLatin1String("remove")) {
        return GlossaryRemove {source};
    }
    if (verb == QLatin1String("enable")) {
        return GlossarySetEnabled {source, true};
    }
    if (verb == QLatin1String("disable")) {
        return GlossarySetEnabled {source, false};
    }
    throw UsageError(usage);
}

TranscriptExport transcriptFormat(const Arguments &arguments)
{
    if (!arguments.isSet(QStringLiteral("format"))) {
        throw UsageError(QStringLiteral("library export 需要 --format（可用 %1）")
                             .arg(rawValues(allTranscriptExports).join(QStringLiteral("、"))));
    }
    return arguments.choice(QStringLiteral("format"), allTranscriptExports, QStringLiteral("輸出格式"));
}

/// The formats in which some of a line's texts can be left out, or those in which none can.
QString formatsWithTextChoice(bool hasChoice)
{
    QStringList names;
    for (const TranscriptExport format : allTranscriptExports) {
        if (hasTextChoice(format) == hasChoice) {
            names.append(rawValue(format));
        }
    }
    const QString last = names.takeLast();
    return QStringLiteral("%1 和 %2").arg(names.join(QStringLiteral("、")), last);
}

TranscriptTextChoice exportedText(const Arguments &arguments, TranscriptExport format)
{
    if (!arguments.isSet(QStringLiteral("text"))) {
        return TranscriptTextChoice::bilingual;
    }
    if (!hasTextChoice(format)) {
        throw UsageError(QStringLiteral("--text 只能用於 %1；%2 一律包含原文與譯文")
                             .arg(formatsWithTextChoice(true), formatsWithTextChoice(false)));
    }
    return arguments.choice(QStringLiteral("text"), allTranscriptTextChoices, QStringLiteral("內容"));
}

/// Each verb of "library" takes options of its own; those of another one are refused.
void requireOptions(const Arguments &arguments, const QString &verb, const QStringList &known)
{
    for (const QString &option : {QStringLiteral("search"), QStringLiteral("format"), QStringLiteral("text"),
             QStringLiteral("output"), QStringLiteral("yes")}) {
        if (arguments.isSet(option) && !known.contains(option)) {
            throw UsageError(QStringLiteral("library %1 沒有選項 --%2").arg(verb, option));
        }
    }
}

LibraryExport parseLibraryExport(const Arguments &arguments)
{
    const TranscriptExport format = transcriptFormat(arguments);
    const QString path = arguments.value(QStringLiteral("output"));
    if (arguments.isSet(QStringLiteral("output")) && path.isEmpty()) {
        throw UsageError(QStringLiteral("--output 需要檔案名稱"));
    }
    return {arguments.positional().at(1), format, exportedText(arguments, format), path};
}

CommandLine parseLibrary(const QStringList &list)
{
    const Arguments arguments(list,
        {{QStringLiteral("search"), QStringLiteral("TEXT"), {}, {}},
            {QStringLiteral("format"), QStringLiteral("FORMAT"), {}, {}},
            {QStringLiteral("text"), QStringLiteral("WHICH"), {}, {}},
            {QStringLiteral("output"), QStringLiteral("FILE"), {}, QStringLiteral("o")},
            {QStringLiteral("yes"), {}, {}, QStringLiteral("y")}});
    if (arguments.wantsHelp()) {
        return ShowText {libraryHelp()};
    }
    const QString usage = QStringLiteral("library 的用法：list、show ID、export ID、delete ID 或 save");
    const QString verb = action(arguments, usage);
    if (verb == QLatin1String("list")) {
        arguments.requirePositional(1, usage);
        requireOptions(arguments, verb, {QStringLiteral("search")});
        return LibraryList {arguments.value(QStringLiteral("search"))};
    }
    if (verb == QLatin1String("save")) {
        arguments.requirePositional(1, usage);
        requireOptions(arguments, verb, {});
        return LibrarySave {};
    }
    arguments.requirePositional(2, usage);
    if (verb == QLatin1String("show")) {
        requireOptions(arguments, verb, {});
        return LibraryShow {arguments.positional().at(1)};
    }
    if (verb == QLatin1String("export")) {
        requireOptions(
            arguments, verb, {QStringLiteral("format"), QStringLiteral("text"), QStringLiteral("output")});
        return parseLibraryExport(arguments);
    }
    if (verb == QLatin1String("delete")) {
        requireOptions(arguments, verb, {QStringLiteral("yes")});
        return LibraryDelete {arguments.positional().at(1), arguments.isSet(QStringLiteral("yes"))};
    }
    throw UsageError(usage);
}

} // namespace

QString rawValue(OutputFormat format)
{
    switch (format) {
    case OutputFormat::text:
        return QStringLiteral("text");
    case OutputFormat::jsonLines:
        return QStringLiteral("jsonl");
    }
    Q_UNREACHABLE();
}

QString rawValue(TranslationChoice choice)
{
    switch (choice) {
    case TranslationChoice::off:
        return QStringLiteral("off");
    case TranslationChoice::onDevice:
        return QStringLiteral("apple");
    case TranslationChoice::custom:
        return QStringLiteral("custom");
    }
    Q_UNREACHABLE();
}

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
    if (command == QLatin1String("models")) {
        return parseModels(arguments.mid(1));
    }
    if (command == QLatin1String("settings")) {
        return parseSettings(arguments.mid(1));
    }
    if (command == QLatin1String("key")) {
        return parseKey(arguments.mid(1));
    }
    if (command == QLatin1String("doctor")) {
        return parseDoctor(arguments.mid(1));
    }
    if (command == QLatin1String("draft")) {
        return parseDraft(arguments.mid(1));
    }
    if (command == QLatin1String("glossary")) {
        return parseGlossary(arguments.mid(1));
    }
    if (command == QLatin1String("library")) {
        return parseLibrary(arguments.mid(1));
    }
    throw UsageError(QStringLiteral("不認得的指令：%1").arg(command));
}

} // namespace lumaphone::cli
