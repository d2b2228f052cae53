#pragma once

#include "base/LocalizedError.h"
#include "capture/AppleSystemSpeechLanguage.h"
#include "glossary/LumaphoneGlossaryTermMode.h"

#include <QString>
#include <QStringList>

#include <variant>

namespace lumaphone::cli {

/// Exit statuses of the program.
enum ExitStatus {
    exitSuccess = 0,
    exitFailure = 1, ///< what was asked for could not be done
    exitUsage = 2, ///< the command line was wrong
};

/// The command line asks for nothing that exists. The text says what is wrong.
class UsageError : public LocalizedError
{
public:
    using LocalizedError::LocalizedError;
};

struct SystemAudioInput
{
    bool operator==(const SystemAudioInput &) const = default;
};
struct MicrophoneInputChoice
{
    bool operator==(const MicrophoneInputChoice &) const = default;
};
struct SoundFileInput
{
    QString path;
    bool isRealtime = false; ///< at the speed of sound instead of as fast as possible
    bool operator==(const SoundFileInput &) const = default;
};

enum class OutputFormat { text, jsonLines };

/// How the lines of a session are translated.
enum class TranslationChoice {
    asInSettings,
    off,
    apple,
    custom,
};

struct CaptionCommandLine
{
    std::variant<SystemAudioInput, MicrophoneInputChoice, SoundFileInput> input;
    AppleSystemSpeechLanguage language = AppleSystemSpeechLanguage::automatic;
    OutputFormat format = OutputFormat::text;
    TranslationChoice translation = TranslationChoice::asInSettings;
    bool keepsDraft = false; ///< in the place of the window's draft
    bool operator==(const CaptionCommandLine &) const = default;
};

struct ShowText
{
    QString text; ///< for standard output: a help text or the version
    bool operator==(const ShowText &) const = default;
};

struct SettingsList
{
};
struct SettingsGet
{
    QString key;
};
struct SettingsSet
{
    QString key;
    QString value;
};

struct KeySet
{
};
struct KeyClear
{
};
struct KeyStatus
{
};

struct DraftShow
{
};
struct DraftDiscard
{
};

struct GlossaryList
{
};
struct GlossaryAdd
{
    QString source;
    QString target;
    LumaphoneGlossaryTermMode mode = LumaphoneGlossaryTermMode::preserve;
    QString note;
    bool caseSensitive = false;
};
struct GlossaryRemove
{
    QString source;
};
struct GlossarySetEnabled
{
    QString source;
    bool isEnabled = true;
};

using CommandLine
    = std::variant<ShowText, CaptionCommandLine, SettingsList, SettingsGet, SettingsSet, KeySet, KeyClear,
        KeyStatus, DraftShow, DraftDiscard, GlossaryList, GlossaryAdd, GlossaryRemove, GlossarySetEnabled>;

/// Reads the arguments behind the program's name. Throws UsageError.
CommandLine parseCommandLine(const QStringList &arguments);

} // namespace lumaphone::cli
