#pragma once

#include "language/AppleSystemSpeechLanguage.h"
#include "platform/MachineFacts.h"
#include "platform/desktop/PortalAppearance.h"

#include <QString>

#include <functional>
#include <memory>

namespace lumaphone {

class CheckedFiles;
class Clock;
class DefaultsStore;
class DetachedTasks;
class LocalSpeechFramework;
class FileViewer;
class FloatingCaptionPresenter;
class KeychainServices;
class KeychainThread;
class LumaphoneAppleTranslationService;
class LumaphoneGlossaryStore;
class LumaphoneSessionDraftStore;
class LumaphoneSettings;
class MainQueue;
class MicrophoneCapture;
class ModelStore;
class OpenAICompatibleTranslationService;
class ScreenAudioCapture;
class SoundCheck;
class LockedSingleInstance;
class TranscriptLibraryStore;
class TranslationFramework;
struct LivePipelineServices;
struct LiveSessionCollaborators;

/// When the user's choices go to their file.
enum class SettingsWriting {
    atOnce,
    gathered, ///< when the hand rests: for those who move sliders
};

/// What the user has stored on this machine, and the machine's services: the one place that knows which
/// adapter stands behind which port. A part is made by the first who asks for it, so that a short command
/// opens only what it needs. Outlives everything that works with it. Main thread.
class Machine
{
public:
    explicit Machine(SettingsWriting settingsWriting = SettingsWriting::atOnce);
    /// Waits for what sessions have left running.
    ~Machine();
    Machine(const Machine &) = delete;
    Machine &operator=(const Machine &) = delete;

    /// Nobody else may use the user's draft while it is claimed.
    LockedSingleInstance &instance();
    DefaultsStore &defaults();
    LumaphoneSettings &settings();
    /// The same settings over other defaults, which outlive them.
    std::unique_ptr<LumaphoneSettings> settingsOver(DefaultsStore &defaults);
    LumaphoneGlossaryStore &glossary();
    TranscriptLibraryStore &library();
    LumaphoneSessionDraftStore draftStore() const;
    /// Those of the user and those of the program.
    const ModelStore &models();

    const std::shared_ptr<MainQueue> &mainQueue() const { return m_mainQueue; }
    const std::shared_ptr<Clock> &clock() const { return m_clock; }
    DetachedTasks &detachedTasks() const { return *m_detachedTasks; }
    /// Whether speech in a language can be recognised now.
    bool isRecognized(AppleSystemSpeechLanguage language);
    LivePipelineServices pipelineServices();
    /// A session that captures the computer's sound or the microphone, translates as `settings` say and keeps
    /// its draft. Both given outlive it.
    LiveSessionCollaborators liveSession(
        LumaphoneSettings &settings, FloatingCaptionPresenter &floatingCaptions);

    /// Tells how loud the computer's sound or the microphone is.
    std::unique_ptr<SoundCheck> soundCheck();

    /// Looks at the machine, on any thread; it may wait. `program`: its name and version.
    std::function<MachineFacts()> probe(const QString &program);
    /// `fallback` where the desktop does not say.
    static std::unique_ptr<PortalAppearance> appearance(ColorScheme fallback);

private:
    FileViewer &fileViewer();
    LocalSpeechFramework &speech();
    LumaphoneAppleTranslationService &onDeviceTranslation();
    const std::shared_ptr<ScreenAudioCapture> &screenAudio();
    const std::shared_ptr<MicrophoneCapture> &microphone();

    const SettingsWriting m_settingsWriting;
    // What stands above is used by what stands below, which goes first.
    std::unique_ptr<LockedSingleInstance> m_instance;
    std::shared_ptr<MainQueue> m_mainQueue;
    std::shared_ptr<DetachedTasks> m_detachedTasks;
    std::shared_ptr<Clock> m_clock;
    std::shared_ptr<ScreenAudioCapture> m_screenAudio;
    std::shared_ptr<MicrophoneCapture> m_microphone;
    std::unique_ptr<DefaultsStore> m_defaults;
    std::shared_ptr<KeychainServices> m_keychain;
    std::unique_ptr<KeychainThread> m_keychainThread;
    std::unique_ptr<FileViewer> m_fileViewer;
    std::unique_ptr<ModelStore> m_models;
    std::unique_ptr<CheckedFiles> m_checkedFiles;
    std::shared_ptr<LocalSpeechFramework> m_speech;
    std::unique_ptr<TranslationFramework> m_translation;
    std::unique_ptr<LumaphoneAppleTranslationService> m_onDeviceTranslation;
    std::unique_ptr<OpenAICompatibleTranslationService> m_chatCompletions;
    std::unique_ptr<LumaphoneSettings> m_settings;
    std::unique_ptr<LumaphoneGlossaryStore> m_glossary;
    std::unique_ptr<TranscriptLibraryStore> m_library;
};

} // namespace lumaphone
