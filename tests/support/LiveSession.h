#pragma once

#include "session/SystemAudioCaptureController.h"
#include "storage/LumaphoneSettings.h"
#include "support/Coroutines.h"
#include "support/CountedUuids.h"
#include "support/FakeMicrophoneCapture.h"
#include "support/FakeScreenAudioCapture.h"
#include "support/MemoryDefaultsStore.h"
#include "support/MemoryKeychain.h"
#include "support/RecordingFloatingCaptions.h"
#include "support/ScriptedPipeline.h"
#include "support/ScriptedTranslator.h"
#include "support/VirtualClock.h"

#include <memory>
#include <vector>

namespace lumaphone::test {

/// A live session among fakes, in virtual time, with the built-in revision rule.
struct LiveSession
{
    std::shared_ptr<VirtualClock> clock = std::make_shared<VirtualClock>();
    MemoryDefaultsStore defaults;
    MemoryKeychain keychain;
    LumaphoneSettings settings {defaults, keychain};
    RecordingFloatingCaptions panel;
    std::shared_ptr<ScriptedTranslator> translator = std::make_shared<ScriptedTranslator>(clock);
    std::shared_ptr<FakeScreenAudioCapture> screenAudio = std::make_shared<FakeScreenAudioCapture>();
    std::shared_ptr<FakeMicrophoneCapture> microphone = std::make_shared<FakeMicrophoneCapture>();
    std::shared_ptr<MainQueue> mainQueue = MainQueue::create();
    std::shared_ptr<ScriptedPipeline> nextPipeline = std::make_shared<ScriptedPipeline>();
    std::vector<std::pair<LumaphoneAudioInputSource, AppleSystemSpeechLanguage>> pipelinesMade;
    QString draftFolder;
    UuidGenerator makeUuid = countedUuids();
    std::unique_ptr<SystemAudioCaptureController> controller;

    /// Without a folder nothing can be saved, which is quick and harms nothing.
    explicit LiveSession(const QString &folder = QStringLiteral("/dev/null/Drafts"))
        : draftFolder(folder)
    {
    }

    /// Lets everything that still sleeps wake up and end.
    ~LiveSession()
    {
        controller.reset();
        clock->advance(std::chrono::hours(48));
    }
    LiveSession(const LiveSession &) = delete;
    LiveSession &operator=(const LiveSession &) = delete;

    SystemAudioCaptureController &make()
    {
        controller = std::make_unique<SystemAudioCaptureController>(LiveSessionCollaborators {
            .settings = settings,
            .floatingCaptions = panel,
            .transcriptProcessor = LumaphoneTranscriptProcessor(std::optional<QString>()),
            .draftStore = LumaphoneSessionDraftStore(draftFolder),
            .translator = translator,
            .access = CaptureAccess(screenAudio, microphone, clock),
            .makePipeline =
                [this](LumaphoneAudioInputSource source, AppleSystemSpeechLanguage language,
                    SystemAudioPipelineEventHandler onEvent) {
                    pipelinesMade.emplace_back(source, language);
                    nextPipeline->onEvent = std::move(onEvent);
                    return nextPipeline;
                },
            .clock = clock,
            .mainQueue = mainQueue,
            .makeUuid = makeUuid,
        });
        return *controller;
    }

    /// A controller whose session runs.
    SystemAudioCaptureController &started()
    {
        make().start();
        settle();
        return *controller;
    }

    void speech(const QString &text, bool isFinal,
        AppleSystemSpeechLanguage language = AppleSystemSpeechLanguage::japanese) const
    {
        controller->handlePipelineEvent(pipeline_event::Speech {text, language, isFinal});
    }
    void partial(const char *text) const { speech(QString::fromUtf8(text), false); }
    void final(const char *text) const { speech(QString::fromUtf8(text), true); }

    QStringList requested() const
    {
        QStringList texts;
        for (const ScriptedTranslator::Call &call : translator->calls) {
            texts.append(call.text);
        }
        return texts;
    }
    QString translationOfLine(qsizetype index) const
    {
        return controller->captionLines().at(index).translatedText;
    }
    TranslationState stateOfLine(qsizetype index) const
    {
        return controller->translationOf(controller->captionLines().at(index)).state;
    }
};

} // namespace lumaphone::test
