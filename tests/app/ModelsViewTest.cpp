#include "app/OffscreenTest.h"
#include "app/ViewUnderTest.h"
#include "app/floating/FloatingCaptionPanel.h"
#include "app/floating/FloatingCaptionWindowController.h"
#include "app/glossary/GlossarySettingsModel.h"
#include "app/inspector/InspectorModel.h"
#include "app/inspector/ProviderSettingsModel.h"
#include "app/library/TranscriptLibraryWorkspaceModel.h"
#include "app/live/LiveSessionModel.h"
#include "app/models/ModelOffer.h"
#include "glossary/LumaphoneGlossaryStore.h"
#include "storage/TranscriptLibraryStore.h"
#include "support/BundledModel.h"
#include "support/Coroutines.h"
#include "support/FileServer.h"
#include "support/FolderResources.h"
#include "support/LiveSession.h"
#include "support/NotingFileViewer.h"
#include "support/ServedModels.h"

#include <QAccessible>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <QTest>

namespace modelsviewtest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

using Language = AppleSystemSpeechLanguage;

constexpr qsizetype modelSize = 100'000;

/// Rows of the list.
const QString english = "models.0";
const QString japanese = "models.1";
const QString korean = "models.2";
const QString englishSpeech = "models.3";
const QString speech = "models.4";

/// The window with models that lie on a local server.
struct Fixture
{
    QTemporaryDir folder;
    LiveSession live;
    NotingFileViewer fileViewer;
    FileServer server;
    LumaphoneGlossaryStore glossaryStore {folder.filePath("glossary"), {}};
    TranscriptLibraryStore libraryStore {{
        .layout = TranscriptLibraryLayout::at(folder.filePath("library")),
        .areRevisions = [](const QString &, const QString &) { return false; },
        .clock = *live.clock,
        .fileViewer = fileViewer,
        .makeUuid = &QUuid::createUuid,
        .locale = QLocale::c(),
    }};
    LiveSessionModel session {live.make(), live.settings, libraryStore, glossaryStore};
    InspectorModel inspector {*live.controller, live.settings, glossaryStore};
    ProviderSettingsModel provider {live.settings, live.clock, live.mainQueue};
    TranscriptLibraryWorkspaceModel library {libraryStore, QLocale::c()};
    GlossarySettingsModel glossary {glossaryStore, live.mainQueue};
    FloatingCaptionWindowController floatingCaptions {live.settings, live.clock, [] {
                                                          return std::unique_ptr<FloatingCaptionPanel>();
                                                      }};
    std::unique_ptr<ModelStore> store = std::make_unique<ModelStore>(folder.filePath("models"),
        servedModels(server, [](const ModelEntry &) { return modelSize; }),
        std::make_shared<FolderResources>(folder.filePath("program")));
    ModelsModel models {*store, live.mainQueue};
    std::vector<Language> recognized {Language::english};
    ModelOffer offer {
        models, live.settings, [this](Language language) {
            const bool isInstalled = models.data(models.index(4), ModelsModel::IsReadyRole).toBool();
            return isInstalled
                || std::find(recognized.begin(), recognized.end(), language) != recognized.end();
        }};
    std::unique_ptr<ViewUnderTest> view;

    ~Fixture() { view.reset(); }

    ViewUnderTest &open(QSize size = QSize(1280, 1600), bool offersModels = true)
    {
        view = std::make_unique<ViewUnderTest>("Shell", "ContentView",
            QVariantMap {{"session", QVariant::fromValue(&session)},
                {"inspector", QVariant::fromValue(&inspector)}, {"provider", QVariant::fromValue(&provider)},
                {"floatingCaptions", QVariant::fromValue(&floatingCaptions)},
                {"transcriptLibrary", QVariant::fromValue(&library)},
                {"glossary", QVariant::fromValue(&glossary)},
                {"modelOffer", QVariant::fromValue(offersModels ? &offer : nullptr)}},
            size);
        return *view;
    }

    /// Chooses the next language of the menu in the command bar.
    void chooseNextLanguage() const
    {
        view->find("languageMenu")->forceActiveFocus();
        view->press(Qt::Key_Down);
    }
    bool endsInstalling() const
    {
        return waitUntil([this] { return !models.isInstalling(); }, 30000);
    }
    /// As a program is shipped.
    void ship() const { shipBundledModel(folder.filePath("program")); }
    ModelState state(const QString &id) const { return store->state(store->catalogue().entry(id)); }
    QString announced() const
    {
        const QQuickItem *notice = view->find("announcer.notice");
        return notice ? notice->property("text").toString() : QString();
    }
};

QString accessibleName(const ViewUnderTest &view, const QString &objectName)
{
    return QAccessible::queryAccessibleInterface(view.find(objectName))->text(QAccessible::Name);
}

} // namespace

class ModelsViewTest : public QObject
{
    Q_OBJECT

private slots:
    void whatIsMissingIsListedAndNothingIsFetched()
    {
        Fixture f;
        auto &view = f.open();
        for (const QString &row : {english, japanese, korean}) {
            QCOMPARE(view.textOf(row + ".status"),
                QString("尚未安裝，下載約 %1").arg(row == english ? "100 kB" : "200 kB"));
            QCOMPARE(view.textOf(row + ".install"), QString("安裝"));
            QVERIFY(!view.isShown(row + ".remove"));
            QVERIFY(!view.isShown(row + ".progress"));
        }
        QCOMPARE(view.textOf(speech), QString("四種語言的語音辨識（SenseVoice-Small）"));
        QVERIFY(!view.isShown("models.5"));
        QVERIFY(f.server.requests().isEmpty());
    }

    void whatComesWithTheProgramIsListedWithItsLicence()
    {
        Fixture f;
        f.ship();
        auto &view = f.open();
        QCOMPARE(view.textOf(englishSpeech), QString("英文的語音辨識（Moonshine\u00a0Tiny）"));
        QCOMPARE(view.textOf(englishSpeech + ".status"), QString("Lumaphone 內建，可離線使用"));
        QVERIFY(!view.isShown(englishSpeech + ".install"));
        QVERIFY(!view.isShown(englishSpeech + ".remove"));
        QVERIFY(!view.isShown(speech + ".licence")); // it is not here yet
        QCOMPARE(accessibleName(view, englishSpeech + ".licence"),
            QString("授權條款「英文的語音辨識（Moonshine\u00a0Tiny）」"));

        QVERIFY(view.click(englishSpeech + ".licence"));
        QVERIFY(waitUntil([&] { return view.focusedName() == "modelLicence.flickable"; }));
        QVERIFY(view.textOf("modelLicence.text").startsWith("MIT 授權。\n\nThe files of this folder"));
        view.press(Qt::Key_Escape);
        QVERIFY(waitUntil([&] { return !view.isShown("modelLicence.close"); }));
        QVERIFY(view.click(englishSpeech + ".licence"));
        QVERIFY(view.click("modelLicence.close"));
        QVERIFY(waitUntil([&] { return !view.isShown("modelLicence.close"); }));
    }

    void aLongLicenceIsScrolledByKeyboard()
    {
        Fixture f;
        f.ship();
        auto &view = f.open(QSize(1040, 420));
        view.find(englishSpeech + ".licence")->forceActiveFocus();
        view.press(Qt::Key_Space);
        QVERIFY(waitUntil([&] { return view.focusedName() == "modelLicence.flickable"; }));
        const QQuickItem *text = view.find("modelLicence.flickable");
        const auto position = [text] {
            return text->property("contentY").toReal();
        };
        const qreal end = text->property("contentHeight").toReal() - text->height();
        QVERIFY(end > 0);
        view.press(Qt::Key_Down);
        QVERIFY(position() > 0);
        view.press(Qt::Key_End);
        QCOMPARE(position(), end);
        view.press(Qt::Key_Down);
        QCOMPARE(position(), end);
        view.press(Qt::Key_PageUp);
        QVERIFY(position() < end);
        view.press(Qt::Key_Home);
        QCOMPARE(position(), 0.0);
        view.press(Qt::Key_Tab);
        QCOMPARE(view.focusedName(), QString("modelLicence.close"));
        view.press(Qt::Key_Space);
        QVERIFY(waitUntil([&] { return !view.isShown("modelLicence.close"); }));
    }

    void aProgramShippedWithoutEnglishSaysWhatToDo()
    {
        Fixture f;
        auto &view = f.open();
        QVERIFY(view.textOf(englishSpeech + ".status").contains("packaging/install-speech-runtime"));
        QVERIFY(!view.isShown(englishSpeech + ".install"));
        QVERIFY(!view.isShown(englishSpeech + ".remove"));
        QVERIFY(!view.isShown(englishSpeech + ".licence"));
    }

    void theProgramsVoiceDetectorSparesAnother()
    {
        Fixture f;
        f.ship();
        auto &view = f.open();
        QCOMPARE(view.textOf(speech + ".status"), QString("尚未安裝，下載約 100 kB"));
        QVERIFY(view.click(speech + ".install"));
        QVERIFY(view.click("modelOffer.accept"));
        QVERIFY(f.endsInstalling());
        QCOMPARE(f.state("sense-voice"), ModelState::installed);
        QCOMPARE(f.state("silero-vad"), ModelState::missing);
        QCOMPARE(view.textOf(speech + ".status"), QString("已安裝，可離線使用"));
    }

    void aPressInstallsAndTheEndIsAnnounced()
    {
        Fixture f;
        auto &view = f.open();
        QVERIFY(view.click(japanese + ".install"));
        QVERIFY(f.endsInstalling());
        QCOMPARE(f.state("ja-en"), ModelState::installed);
        QCOMPARE(view.textOf(japanese + ".status"), QString("已安裝，可離線使用"));
        QCOMPARE(view.textOf(english + ".status"), QString("已安裝，可離線使用"));
        QVERIFY(!view.isShown(japanese + ".install"));
        QVERIFY(view.isShown(japanese + ".remove"));
        QCOMPARE(f.announced(), QString("日文翻譯成繁體中文：已安裝，可離線使用"));
        QCOMPARE(view.textOf("installationNotice"), QString("日文翻譯成繁體中文：已安裝，可離線使用"));
        view.photograph("installation-ended");
        QVERIFY(view.click("installationNotice.dismiss"));
        QVERIFY(!view.isShown("installationNotice"));
        QVERIFY(f.server.requestsFor("/sense-voice.bin").isEmpty());
    }

    void anInstallationGoesOnWhileCaptionsRun()
    {
        Fixture f;
        f.server.muteAfter = modelSize / 2;
        auto &view = f.open();
        QVERIFY(view.click(english + ".install"));
        QVERIFY(waitUntil([&] { return view.textOf(english + ".status").startsWith("下載中..."); }));
        f.session.startOrStop();
        settle();
        QVERIFY(f.session.isRunning());
        f.live.speech("The first line", true);
        QVERIFY(f.models.isInstalling());
        QVERIFY(view.click(english + ".cancel"));
        QVERIFY(f.endsInstalling());
        f.server.muteAfter.reset();
        QVERIFY(view.click(english + ".install"));
        QVERIFY(f.endsInstalling());
        QCOMPARE(f.state("en-zh-Hant"), ModelState::installed);
        QVERIFY(f.session.isRunning());
        f.live.speech("The second line", true);
        QVERIFY(!f.live.controller->captionLines().isEmpty());
    }

    void progressIsShownAndCanBePaused()
    {
        Fixture f;
        f.server.muteAfter = modelSize / 2;
        auto &view = f.open();
        QVERIFY(view.click(english + ".install"));
        QVERIFY(waitUntil([&] {
            const QQuickItem *bar = view.find(english + ".progress");
            return bar && bar->property("value").toDouble() > 0.4;
        }));
        QVERIFY(view.textOf(english + ".status").startsWith("下載中..."));
        QVERIFY(!view.find(english + ".progress")->property("indeterminate").toBool());
        QCOMPARE(accessibleName(view, english + ".cancel"), QString("暫停下載「英文翻譯成繁體中文」"));
        QVERIFY(view.click(english + ".cancel"));
        QVERIFY(f.endsInstalling());
        QCOMPARE(view.textOf(english + ".status"), QString("已暫停，按「繼續」接著下載"));
        QCOMPARE(view.textOf(english + ".install"), QString("繼續"));
        QCOMPARE(f.announced(), QString());
        f.server.muteAfter.reset();
        QVERIFY(view.click(english + ".install"));
        QVERIFY(f.endsInstalling());
        QCOMPARE(f.state("en-zh-Hant"), ModelState::installed);
    }

    void aFailureIsSaidAndCanBeTriedAgain()
    {
        Fixture f;
        f.server.status = 503;
        auto &view = f.open();
        QVERIFY(view.click(english + ".install"));
        QVERIFY(f.endsInstalling());
        const QString text = "無法下載 en-zh-Hant.bin：伺服器回應 HTTP 503。";
        QCOMPARE(view.textOf(english + ".status"), text);
        QCOMPARE(f.announced(), "英文翻譯成繁體中文：" + text);
        f.server.status.reset();
        QVERIFY(view.click(english + ".install"));
        QVERIFY(f.endsInstalling());
        QVERIFY(view.isShown(english + ".remove"));
    }

    void aLicenceIsAcceptedBeforeAnythingIsFetched()
    {
        Fixture f;
        auto &view = f.open();
        QVERIFY(view.click(speech + ".install"));
        QVERIFY(waitUntil([&] { return view.isShown("modelOffer.accept"); }));
        QVERIFY(view.textOf("modelOffer.4.licence").contains("FunASR 模型授權條款"));
        QVERIFY(!view.isShown("modelOffer.1"));
        QCOMPARE(view.textOf("modelOffer.accept"), QString("接受並安裝"));
        QVERIFY(waitUntil([&] { return view.focusedName() == "modelOffer.later"; }));
        QVERIFY(view.click("modelOffer.later"));
        QVERIFY(waitUntil([&] { return !view.isShown("modelOffer.accept"); }));
        QVERIFY(f.server.requests().isEmpty());

        QVERIFY(view.click(speech + ".install"));
        QVERIFY(view.click("modelOffer.accept"));
        QVERIFY(f.endsInstalling());
        QCOMPARE(f.state("sense-voice"), ModelState::installed);
        QCOMPARE(f.state("silero-vad"), ModelState::installed);
        QCOMPARE(view.textOf("modelOffer.accept"), QString("完成"));
        QVERIFY(!view.isShown("modelOffer.later"));
        QVERIFY(view.click("modelOffer.accept"));
        QVERIFY(waitUntil([&] { return !view.isShown("modelOffer.accept"); }));
        QCOMPARE(view.textOf(speech + ".status"), QString("已安裝，可離線使用"));
    }

    void removingIsConfirmed()
    {
        Fixture f;
        auto &view = f.open();
        QVERIFY(view.click(japanese + ".install"));
        QVERIFY(f.endsInstalling());
        QVERIFY(view.click(english + ".remove"));
        QVERIFY(waitUntil([&] { return view.isShown("modelRemoval.confirm"); }));
        QVERIFY(view.click("modelRemoval.cancel"));
        QVERIFY(waitUntil([&] { return !view.isShown("modelRemoval.confirm"); }));
        QCOMPARE(f.state("en-zh-Hant"), ModelState::installed);
        QVERIFY(view.click(japanese + ".remove"));
        QVERIFY(view.click("modelRemoval.confirm"));
        QCOMPARE(f.state("ja-en"), ModelState::missing);
        QCOMPARE(f.state("en-zh-Hant"), ModelState::installed);
        QVERIFY(view.isShown(japanese + ".install"));
    }

    void whatIsDamagedIsRepaired()
    {
        Fixture f;
        auto &view = f.open();
        QVERIFY(view.click(english + ".install"));
        QVERIFY(f.endsInstalling());
        QVERIFY(QFile::remove(f.store->folder() + "/en-zh-Hant/en-zh-Hant.bin"));
        f.models.refresh();
        QCOMPARE(view.textOf(english + ".status"), QString("檔案已損壞"));
        QCOMPARE(view.textOf(english + ".install"), QString("修復"));
        QVERIFY(view.click(english + ".install"));
        QVERIFY(f.endsInstalling());
        QCOMPARE(f.state("en-zh-Hant"), ModelState::installed);
    }

    void aLanguageWithoutAModelOffersIt()
    {
        Fixture f;
        auto &view = f.open();
        f.chooseNextLanguage();
        QCOMPARE(f.live.controller->sourceLanguage(), Language::japanese);
        QVERIFY(waitUntil([&] { return view.isShown("modelOffer.accept"); }));
        QCOMPARE(f.offer.title(), QString("安裝「日文」的語音辨識？"));
        QCOMPARE(view.textOf("modelOffer.message"),
            QString("這台電腦還聽不懂日文。下載一次之後就能離線使用，聲音不會離開這台電腦。"));
        QCOMPARE(view.textOf("modelOffer.4.status"), QString("尚未安裝，下載約 200 kB"));
        QVERIFY(view.isShown("modelOffer.1")); // and what translates it
        QVERIFY(!view.isShown("modelOffer.0"));
        QVERIFY(!view.isShown("modelOffer.2"));
        QVERIFY(f.server.requests().isEmpty());
        QVERIFY(view.click("modelOffer.accept"));
        QVERIFY(f.endsInstalling());
        QCOMPARE(view.textOf("modelOffer.message"), QString("已經安裝完成，下次開始字幕時就會使用。"));
        for (const char *id : {"sense-voice", "silero-vad", "ja-en", "en-zh-Hant"}) {
            QVERIFY2(f.state(id) == ModelState::installed, id);
        }
        QCOMPARE(f.state("ko-en"), ModelState::missing);
    }

    void anOfferCanBeDeclined()
    {
        Fixture f;
        auto &view = f.open();
        f.inspector.setSourceLanguage("korean");
        f.offer.languageChosen("korean");
        QVERIFY(waitUntil([&] { return view.isShown("modelOffer.accept"); }));
        view.press(Qt::Key_Escape);
        QVERIFY(waitUntil([&] { return !view.isShown("modelOffer.accept"); }));
        QCOMPARE(f.live.controller->sourceLanguage(), Language::korean);
        QVERIFY(f.server.requests().isEmpty());
    }

    void thePickerOfTheInspectorOffersAsWell()
    {
        Fixture f;
        auto &view = f.open();
        view.find("inspector.language.picker")->forceActiveFocus();
        view.press(Qt::Key_Down);
        QCOMPARE(f.live.controller->sourceLanguage(), Language::english);
        view.press(Qt::Key_Down);
        QVERIFY(waitUntil([&] { return view.isShown("modelOffer.accept"); }));
        QCOMPARE(f.live.controller->sourceLanguage(), Language::korean);
    }

    void withAnEndpointOnlySpeechIsOffered()
    {
        Fixture f;
        f.live.settings.setProcessingMode(LumaphoneProcessingMode::customAPI);
        auto &view = f.open();
        f.chooseNextLanguage();
        QVERIFY(waitUntil([&] { return view.isShown("modelOffer.4"); }));
        QVERIFY(!view.isShown("modelOffer.1"));
    }

    void whatCanBeHeardAlreadyIsNotOffered()
    {
        Fixture f;
        auto &view = f.open();
        f.offer.languageChosen("english");
        f.recognized = {Language::japanese, Language::english, Language::korean, Language::mandarin};
        f.offer.languageChosen("automatic");
        f.offer.languageChosen("klingon");
        settle();
        QVERIFY(!view.isShown("modelOffer.accept"));
        f.recognized = {Language::english};
        f.offer.languageChosen("automatic");
        QVERIFY(waitUntil([&] { return view.isShown("modelOffer.accept"); }));
        QCOMPARE(view.textOf("modelOffer.message"),
            QString("自動辨識目前只聽得懂英文。下載一次之後就能離線使用，聲音不會離開這台電腦。"));
    }

    void whatHelpsNothingIsNotOffered()
    {
        Fixture f;
        auto &view = f.open();
        f.models.install(4, true);
        QVERIFY(f.endsInstalling());
        // The models are there, and still the language cannot be heard: something else is missing.
        ModelOffer offer(f.models, f.live.settings, [](Language) { return false; });
        bool wasAsked = false;
        connect(&offer, &ModelOffer::asked, this, [&] { wasAsked = true; });
        offer.languageChosen("japanese");
        QVERIFY(!wasAsked);
        QVERIFY(!view.isShown("modelOffer.accept"));
    }

    void anInstallationGoesOnBehindTheWindow()
    {
        Fixture f;
        f.server.muteAfter = modelSize / 2;
        auto &view = f.open();
        f.chooseNextLanguage();
        QVERIFY(view.click("modelOffer.accept"));
        QVERIFY(waitUntil([&] { return view.textOf("modelOffer.accept") == "在背景繼續"; }));
        QVERIFY(view.click("modelOffer.accept"));
        QVERIFY(waitUntil([&] { return !view.isShown("modelOffer.accept"); }));
        QVERIFY(f.models.isInstalling());
        QVERIFY(view.isShown(speech + ".progress"));
        // It can be ended from the same sheet.
        f.offer.languageChosen("japanese");
        QVERIFY(waitUntil([&] { return view.textOf("modelOffer.later") == "暫停下載"; }));
        QVERIFY(view.click("modelOffer.later"));
        QVERIFY(f.endsInstalling());
        QVERIFY(waitUntil([&] { return view.textOf("modelOffer.later") == "之後再說"; }));
        QVERIFY(view.isShown("modelOffer.accept"));
    }

    void aSecondClickDoesNotCancel()
    {
        Fixture f;
        f.server.muteAfter = modelSize / 2;
        auto &view = f.open();
        const QQuickItem *button = view.find(english + ".install");
        const QPoint middle = button->mapToScene({button->width() / 2, button->height() / 2}).toPoint();
        QTest::mouseDClick(&view.window(), Qt::LeftButton, {}, middle);
        settle();
        QVERIFY(f.models.isInstalling());
    }

    void withoutAnOfferThereIsNoList()
    {
        Fixture f;
        auto &view = f.open(QSize(1040, 680), false);
        QVERIFY(view.isShown("inspector.language"));
        QVERIFY(!view.isShown("models.0"));
        f.chooseNextLanguage();
        QCOMPARE(f.live.controller->sourceLanguage(), Language::japanese);
        QVERIFY(!view.isShown("modelOffer.accept"));
    }

    void everythingIsDoneByKeyboard()
    {
        Fixture f;
        auto &view = f.open(QSize(1040, 680));
        view.find("inspector.mode.picker")->forceActiveFocus();
        view.press(Qt::Key_Tab);
        QCOMPARE(view.focusedName(), english + ".install");
        const QQuickItem *button = view.find(english + ".install");
        const auto bottom = [button] {
            return button->mapToScene({0, button->height()}).y();
        };
        QVERIFY2(bottom() <= 680, "what has the keyboard is out of view");
        QCOMPARE(accessibleName(view, english + ".install"), QString("安裝「英文翻譯成繁體中文」"));
        view.press(Qt::Key_Space);
        QVERIFY(f.endsInstalling());
        view.press(Qt::Key_Tab);
        QCOMPARE(view.focusedName(), english + ".remove");
        view.press(Qt::Key_Tab);
        QCOMPARE(view.focusedName(), japanese + ".install");
        view.press(Qt::Key_Tab);
        view.press(Qt::Key_Tab);
        QCOMPARE(view.focusedName(), speech + ".install");
        view.press(Qt::Key_Space);
        QVERIFY(waitUntil([&] { return view.focusedName() == "modelOffer.later"; }));
        view.press(Qt::Key_Tab);
        QCOMPARE(view.focusedName(), QString("modelOffer.accept"));
        view.press(Qt::Key_Space);
        QVERIFY(f.endsInstalling());
        QCOMPARE(f.state("sense-voice"), ModelState::installed);
    }
};

LUMAPHONE_OFFSCREEN_TEST(ModelsViewTest)

} // namespace modelsviewtest

#include "ModelsViewTest.moc"
