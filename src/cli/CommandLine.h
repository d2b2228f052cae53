#pragma once

#include "base/LocalizedError.h"
#include "glossary/LumaphoneGlossaryTermMode.h"
#include "language/AppleSystemSpeechLanguage.h"
#include "storage/TranscriptExport.h"

#include <QString>
#include <QStringList>

#include <array>
#include <optional>
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
inline constexpr std::array allOutputFormats {OutputFormat::text, OutputFormat::jsonLines};
/// As it is written on the command line.
QString rawValue(OutputFormat format);

/// How the lines of a session are translated.
enum class TranslationChoice { off, onDevice, custom };
inline constexpr std::array allTranslationChoices {
    TranslationChoice::off, TranslationChoice::onDevice, TranslationChoice::custom};
/// As it is written on the command line.
QString rawValue(TranslationChoice choice);

struct CaptionCommandLine
{
    std::variant<SystemAudioInput, MicrophoneInputChoice, SoundFileInput> input;
    AppleSystemSpeechLanguage language = AppleSystemSpeechLanguage::automatic;
    OutputFormat format = OutputFormat::text;
    std::optional<TranslationChoice> translation = std::nullopt; ///< none: as the settings say
    bool keepsDraft = false; ///< in the place of the window's draft
    bool operator==(const CaptionCommandLine &) const = default;
};

struct ShowText
{
    QString text; ///< for standard output: a help text or the version
    bool operator==(const ShowText &) const = default;
};

/// Models are named by themselves or by the pair that they lead from and to, such as "ja-zh-Hant".
struct ModelsList
{
};
struct ModelsInstall
{
    QStringList names;
    QString from; ///< a folder or file of the user's; empty: from the publisher
    bool acceptsLicence = false;
    bool operator==(const ModelsInstall &) const = default;
};
struct ModelsRemove
{
    QStringList names;
};
struct ModelsVerify
{
    QStringList names; ///< empty: all that are in place
};
struct ModelsLicence
{
    QStringList names;
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

/// Looks at the machine.
struct Doctor
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

struct GlossaryImport
{
    QString path;
};
struct GlossaryExport
{
    QString path;
};

struct LibraryList
{
    QString search; ///< blank: everything
};
struct LibraryShow
{
    QString id; ///< or its beginning
};
struct LibraryExport
{
    QString id;
    TranscriptExport format = TranscriptExport::markdown;
    TranscriptTextChoice text = TranscriptTextChoice::bilingual; ///< where the format has a choice
    QString path; ///< empty: standard output
    bool operator==(const LibraryExport &) const = default;
};
struct LibraryDelete
{
    QString id;
    bool isConfirmed = false;
};
struct LibrarySave
{
};

using CommandLine = std::variant<ShowText, CaptionCommandLine, ModelsList, ModelsInstall, ModelsRemove,
    ModelsVerify, ModelsLicence, SettingsList, SettingsGet, SettingsSet, KeySet, KeyClear, KeyStatus, Doctor,
    DraftShow, DraftDiscard, GlossaryList, GlossaryAdd, GlossaryRemove, GlossarySetEnabled, GlossaryImport,
    GlossaryExport, LibraryList, LibraryShow, LibraryExport, LibraryDelete, LibrarySave>;

/// Reads the arguments behind the program's name. Throws UsageError.
CommandLine parseCommandLine(const QStringList &arguments);

} // namespace lumaphone::cli
