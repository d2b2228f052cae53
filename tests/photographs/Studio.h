#pragma once

#include "app/diagnosis/DiagnosisModel.h"
#include "app/floating/FloatingCaptionWindowController.h"
#include "app/glossary/GlossarySettingsModel.h"
#include "app/inspector/InspectorModel.h"
#include "app/inspector/ProviderSettingsModel.h"
#include "app/library/TranscriptLibraryWorkspaceModel.h"
#include "app/live/LiveSessionModel.h"
#include "app/live/SoundTestModel.h"
#include "app/models/ModelOffer.h"
#include "app/welcome/WelcomeModel.h"
#include "glossary/LumaphoneGlossaryStore.h"
#include "storage/TranscriptLibraryStore.h"
#include "support/BundledModel.h"
#include "support/LiveSession.h"
#include "support/NotingFileViewer.h"

#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>

namespace lumaphone::test {

/// The whole window among fakes, in a state of the photographer's choice.
class Studio
{
public:
    /// Where the session's draft and the user's files lie; a second studio in the same folder finds them.
    explicit Studio(const QString &folder, std::chrono::milliseconds soundPatience = std::chrono::hours(1));
    ~Studio();

    /// The only pictures that are taken, by name; all if there are none.
    static void setChosen(const QStringList &pictures);
    /// Whether windows look as on a desktop that asks for more contrast.
    static void setHighContrast(bool isHigh);
    /// Whether windows are as small as they can be, whatever size is asked for.
    static void setSmallest(bool isSmallest);

    /// Opens the window.
    void open(QSize size = QSize(1280, 800));
    /// Photographs the window, light and dark, as "<folder>/<name>-light.png" and "-dark.png".
    void photograph(const QString &folder, const QString &name);

    /// The one object of the window with that name; none is an error.
    QObject &object(const QString &name) const;
    /// The visible item of that name, in menus and sheets too; none if there is none.
    QQuickItem *find(const QString &name) const;
    /// Clicks on it; none is an error.
    void click(const QString &name) const;
    /// Gives it the keyboard, as Tab does when it comes to it. False if there is none, or it does not take
    /// it.
    bool focus(const QString &name) const;
    QObject &content() const;
    /// Lets the window and the session come to rest.
    void settle();
    /// Lets the session's time pass.
    void advance(std::chrono::milliseconds time);

    /// Says a line, with its translation; a translation that is empty never comes.
    void say(const QString &text, const QString &translation, AppleSystemSpeechLanguage language,
        bool isFinal = true);
    /// A conversation of a few lines, the last of them still open.
    void converse();
    /// Starts, converses and stops.
    void holdSession();

    /// Puts a record of these lines into the library, each a source with its translation, with two terms.
    TranscriptRecordMetadata save(const QString &title, AppleSystemSpeechLanguage language,
        const QList<std::pair<QString, QString>> &lines);

    /// Which models there are; to be changed before open().
    ModelCatalogue catalogue = catalogueWithSmallBundle();
    LiveSession session;
    NotingFileViewer fileViewer;
    QString folder;
    std::unique_ptr<LumaphoneGlossaryStore> glossaryStore;
    std::unique_ptr<TranscriptLibraryStore> library;
    std::unique_ptr<LiveSessionModel> live;
    std::unique_ptr<SoundTestModel> soundTest;
    std::unique_ptr<InspectorModel> inspector;
    std::unique_ptr<ProviderSettingsModel> provider;
    std::unique_ptr<TranscriptLibraryWorkspaceModel> workspace;
    std::unique_ptr<GlossarySettingsModel> glossary;
    std::unique_ptr<ModelStore> modelStore;
    std::unique_ptr<ModelsModel> models;
    std::unique_ptr<ModelOffer> modelOffer;
    /// Nobody is welcomed without it; to be made before open().
    std::unique_ptr<WelcomeModel> welcome;
    /// The machine cannot be looked at without it; to be made before open().
    std::unique_ptr<DiagnosisModel> diagnosis;
    std::unique_ptr<FloatingCaptionWindowController> floatingCaptions;
    std::unique_ptr<QQmlApplicationEngine> engine;
    QQuickWindow *window = nullptr;

private:
    QTemporaryDir m_program; ///< what comes with the program
};

} // namespace lumaphone::test
