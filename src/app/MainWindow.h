#pragma once

#include "app/diagnosis/DiagnosisModel.h"
#include "app/floating/FloatingCaptionPanel.h"
#include "app/floating/FloatingCaptionWindowController.h"
#include "app/glossary/GlossarySettingsModel.h"
#include "app/inspector/InspectorModel.h"
#include "app/inspector/ProviderSettingsModel.h"
#include "app/library/TranscriptLibraryWorkspaceModel.h"
#include "app/live/LiveSessionModel.h"
#include "app/live/SoundTestModel.h"
#include "app/models/ModelOffer.h"
#include "app/models/ModelsModel.h"
#include "app/welcome/WelcomeModel.h"
#include "platform/desktop/PortalAppearance.h"
#include "session/SystemAudioCaptureController.h"

#include <QQmlApplicationEngine>
#include <QVariantMap>

#include <memory>

class QWindow;

namespace lumaphone {

class Machine;

/// The window with everything that it shows: one model for each part of it.
class MainWindow
{
public:
    /// `machine` outlives the window.
    explicit MainWindow(Machine &machine);
    ~MainWindow();
    MainWindow(const MainWindow &) = delete;
    MainWindow &operator=(const MainWindow &) = delete;

    /// False if the views could not be loaded.
    bool open();
    void raise() const;
    /// As when the user closes it: what was edited is saved, and the session ends.
    void close() const;

private:
    QVariantMap appearance() const;
    std::unique_ptr<FloatingCaptionPanel> makePanel();

    LumaphoneSettings &m_settings;
    const std::unique_ptr<PortalAppearance> m_appearance;
    FloatingCaptionWindowController m_floatingCaptions;
    SystemAudioCaptureController m_controller;
    LiveSessionModel m_session;
    SoundTestModel m_soundTest;
    InspectorModel m_inspector;
    ProviderSettingsModel m_provider;
    TranscriptLibraryWorkspaceModel m_library;
    GlossarySettingsModel m_glossary;
    ModelsModel m_models;
    ModelOffer m_modelOffer;
    DiagnosisModel m_diagnosis;
    WelcomeModel m_welcome;
    QQmlApplicationEngine m_engine; ///< goes first, while what it shows is there
    QWindow *m_window = nullptr;
};

} // namespace lumaphone
