#include "base/AtomicFile.h"
#include "capture/SystemAudioCaptureError.h"
#include "photographs/KeptPictures.h"
#include "photographs/PanelPhotographs.h"
#include "photographs/StagePhotographs.h"
#include "photographs/Studio.h"
#include "support/FileServer.h"
#include "support/MisbehavingHttpServer.h"
#include "support/PrivateDisplay.h"
#include "support/ServedModels.h"

#include <QDir>
#include <QGuiApplication>
#include <QTest>

#include <cstdio>
#include <optional>

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

/// A folder of the user's files for one photograph.
class UserFolder
{
public:
    QString path() const { return m_folder.path(); }

private:
    QTemporaryDir m_folder;
};

void start(Studio &studio)
{
    studio.live->startOrStop();
    studio.settle();
}

void photographLive(const QString &target)
{
    const UserFolder user;
    {
        Studio studio(user.path());
        studio.open();
        studio.photograph(target, QStringLiteral("live-idle"));
        studio.object(QStringLiteral("inspector.flickable")).setProperty("contentY", 480);
        studio.photograph(target, QStringLiteral("inspector-captions"));
        studio.object(QStringLiteral("inspector.flickable")).setProperty("contentY", 0);
        studio.session.nextPipeline->gate.close();
        start(studio);
        studio.photograph(target, QStringLiteral("live-starting"));
        studio.session.nextPipeline->gate.open();
        studio.settle();
        studio.photograph(target, QStringLiteral("live-running-empty"));
        studio.converse();
        studio.photograph(target, QStringLiteral("live-running"));
        studio.live->transcript()->beginSelection(1, true, 2);
        studio.live->transcript()->extendSelection(2, 6);
        studio.photograph(target, QStringLiteral("live-selected"));
        studio.live->transcript()->goTo(1);
        studio.click(QStringLiteral("card.find"));
        QTest::sendKeyEvent(
            QTest::Click, studio.window, Qt::Key_unknown, QStringLiteral("の"), Qt::NoModifier);
        studio.photograph(target, QStringLiteral("live-finding"));
        QTest::keyClick(studio.window, Qt::Key_Escape);
        studio.content().setProperty("isInspectorVisible", false);
        studio.photograph(target, QStringLiteral("live-running-wide"));
        studio.content().setProperty("isInspectorVisible", true);
        studio.say(QStringLiteral("안녕하세요, 지금부터 회의를 시작하겠습니다."),
            QStringLiteral("大家好，現在開始開會。"), AppleSystemSpeechLanguage::korean);
        studio.say(
            QStringLiteral("So the question is whether we ship in March, or whether we wait for the new "
                           "recogniser and ship one month later with all four languages in it"),
            QString(), AppleSystemSpeechLanguage::english, false);
        studio.photograph(target, QStringLiteral("live-running-pending"));
        studio.live->startOrStop();
        studio.settle();
        studio.photograph(target, QStringLiteral("live-stopped-unsaved"));
        studio.click(QStringLiteral("clear"));
        studio.photograph(target, QStringLiteral("clear-confirmation"));
    }
    {
        Studio studio(user.path());
        studio.session.translator->plan = [](const QString &) {
            return ScriptedTranslator::Plan {std::chrono::hours(24), QString()};
        };
        studio.open();
        studio.photograph(target, QStringLiteral("live-restored"));
        studio.live->saveTranscript();
        studio.settle();
        studio.photograph(target, QStringLiteral("live-saved"));
    }
    {
        Studio studio(UserFolder().path());
        studio.open();
        start(studio);
        studio.converse();
        studio.session.translator->plan = [](const QString &) {
            return ScriptedTranslator::Plan {
                {}, QStringLiteral("連線逾時：http://server/v1 在 60 秒內沒有完整回應。")};
        };
        for (const char *text : {"それは来月に回しましょう。", "以上です。"}) {
            studio.session.final(text);
            studio.settle();
        }
        studio.photograph(target, QStringLiteral("live-untranslated"));
        studio.live->startOrStop();
        studio.settle();
        studio.photograph(target, QStringLiteral("live-stopped-untranslated"));
    }
    {
        Studio studio(UserFolder().path());
        studio.open(QSize(1040, 680));
        start(studio);
        studio.converse();
        studio.photograph(target, QStringLiteral("live-running-smallest"));
    }
    {
        Studio studio(UserFolder().path(), std::chrono::milliseconds(1));
        studio.open();
        start(studio);
        QTest::qWait(50);
        studio.photograph(target, QStringLiteral("live-without-sound"));
    }
    {
        Studio studio(UserFolder().path());
        studio.session.screenAudio->isGranted = false;
        studio.open();
        studio.photograph(target, QStringLiteral("live-permission-pending"));
    }
    {
        Studio studio(UserFolder().path());
        studio.session.nextPipeline->startError
            = std::make_exception_ptr(SystemAudioCaptureError(SystemAudioCaptureError::Case::noDisplay));
        studio.open();
        start(studio);
        studio.photograph(target, QStringLiteral("live-error"));
    }
    {
        Studio studio(QStringLiteral("/dev/null"));
        studio.open();
        studio.holdSession();
        studio.live->saveTranscript();
        studio.settle();
        if (studio.live->saveErrorMessage().isEmpty()) {
            throw std::runtime_error("Nothing is said of a save that fails.");
        }
        studio.photograph(target, QStringLiteral("live-save-error"));
    }
}

void photographMenus(const QString &target)
{
    const UserFolder user;
    Studio studio(user.path());
    studio.open();
    studio.click(QStringLiteral("moreSettings"));
    studio.photograph(target, QStringLiteral("menu-more"));
    QTest::keyClick(studio.window, Qt::Key_Escape);
    studio.click(QStringLiteral("languageMenu"));
    studio.photograph(target, QStringLiteral("menu-languages"));
    QTest::keyClick(studio.window, Qt::Key_Escape);
    QTest::keyClick(studio.window, Qt::Key_F1);
    studio.photograph(target, QStringLiteral("menu-keys"));
}

void photographProvider(const QString &target)
{
    const UserFolder user;
    Studio studio(user.path());
    studio.open();
    studio.session.settings.setProcessingMode(LumaphoneProcessingMode::customAPI);
    studio.session.settings.setProviderBaseURL({});
    studio.session.settings.setProviderModel({});
    studio.content().setProperty("isProviderSettingsPresented", true);
    studio.photograph(target, QStringLiteral("provider-unset"));
    MisbehavingHttpServer mute;
    mute.thenAnswer(behaviour::stayMute());
    studio.provider->setBaseURL(mute.url(QStringLiteral("/v1")));
    studio.provider->setModel(QStringLiteral("qwen2.5:7b"));
    studio.provider->setApiKey(QStringLiteral("sk-not-a-real-key"));
    studio.provider->testProvider();
    studio.photograph(target, QStringLiteral("provider-testing"));
    MisbehavingHttpServer refusing;
    refusing.thenAnswer(behaviour::respond(401, "{\"error\":{\"message\":\"Incorrect API key provided\"}}"));
    studio.provider->setBaseURL(refusing.url(QStringLiteral("/v1")));
    studio.provider->testProvider();
    if (!waitUntil([&] { return !studio.provider->isTestingProvider(); })) {
        throw std::runtime_error("The test of the provider did not end.");
    }
    studio.photograph(target, QStringLiteral("provider-failure"));
    MisbehavingHttpServer server;
    server.thenAnswer(behaviour::complete(QStringLiteral("早安。我們開始吧？")));
    studio.provider->setBaseURL(server.url(QStringLiteral("/v1")));
    studio.provider->testProvider();
    if (!waitUntil([&] { return !studio.provider->isTestingProvider(); })) {
        throw std::runtime_error("The test of the provider did not end.");
    }
    studio.photograph(target, QStringLiteral("provider-success"));
    studio.session.settings.setProviderBaseURL(LumaphoneSettings::defaultProviderBaseURL());
    studio.session.settings.saveProviderAPIKey(QStringLiteral("sk-not-a-real-key"));
    studio.provider->open();
    studio.provider->setBaseURL(QStringLiteral("http://localhost:11434/v1"));
    studio.photograph(target, QStringLiteral("provider-key-of-another-server"));
}

void fillLibrary(Studio &studio)
{
    using Language = AppleSystemSpeechLanguage;
    studio.save(QStringLiteral("發表會直播"), Language::english,
        {{QStringLiteral("Good morning, everyone."), QStringLiteral("各位早安。")},
            {QStringLiteral("Today we have three things to show you."),
                QStringLiteral("今天有三樣東西要給大家看。")}});
    studio.save(QStringLiteral("讀書會：第三章"), Language::korean,
        {{QStringLiteral("안녕하세요, 지금부터 시작하겠습니다."), QStringLiteral("大家好，現在開始。")}});
    studio.save(QStringLiteral("設計週會：字幕面板與快捷鍵"), Language::japanese,
        {{QStringLiteral("おはようございます。今日は新しい企画について話します。"),
             QStringLiteral("早安。今天要來談新的企劃。")},
            {QStringLiteral("まず来月の予定から確認しましょう。"),
                QStringLiteral("我們先從下個月的行程開始確認吧。")},
            {QStringLiteral("ちょっと待って、今のアイデアめちゃくちゃ良くない？"),
                QStringLiteral("等一下，剛剛那個點子也太可以了吧？")}});
}

void photographLibrary(const QString &target)
{
    const UserFolder user;
    Studio studio(user.path());
    studio.open();
    studio.content().setProperty("workspaceMode", QStringLiteral("library"));
    studio.photograph(target, QStringLiteral("library-empty"));
    fillLibrary(studio);
    studio.photograph(target, QStringLiteral("library-nothing-selected"));
    studio.workspace->setSearchText(QStringLiteral("水星"));
    studio.photograph(target, QStringLiteral("library-no-match"));
    studio.workspace->setSearchText({});
    studio.workspace->selectInitialRecordIfNeeded();
    studio.photograph(target, QStringLiteral("library-selected"));
    studio.workspace->setEditingTranscript(true);
    studio.workspace->setNote(QStringLiteral("下週前確認字級的預設值。"));
    studio.photograph(target, QStringLiteral("library-editing"));
    studio.workspace->saveEdits();
    studio.workspace->setEditingTranscript(false);
    studio.workspace->requestDelete();
    studio.photograph(target, QStringLiteral("library-deleting"));
    studio.workspace->cancelDelete();
    QMetaObject::invokeMethod(&studio.object(QStringLiteral("library.deleteAlert")), "close");
    const TranscriptRecordMetadata broken
        = studio.save(QStringLiteral("面試錄音"), AppleSystemSpeechLanguage::english,
            {{QStringLiteral("Tell me about yourself."), QStringLiteral("請介紹一下你自己。")}});
    const QString lines
        = QStringLiteral("%1/Transcripts/sessions/%2/lines.json").arg(user.path(), broken.folderName);
    replaceFile(lines, "[", Durability::renamed);
    studio.workspace->selectRow(0);
    studio.photograph(target, QStringLiteral("library-broken"));
}

void photographGlossary(const QString &target)
{
    const UserFolder user;
    Studio studio(user.path());
    studio.open();
    studio.content().setProperty("isGlossaryPresented", true);
    studio.photograph(target, QStringLiteral("glossary-empty"));
    const auto add = [&studio](const char *source, const char *termTarget, LumaphoneGlossaryTermMode mode,
                         bool isEnabled, bool caseSensitive) {
        studio.glossaryStore->add({.id = QUuid::createUuid(),
            .source = QString::fromUtf8(source),
            .target = QString::fromUtf8(termTarget),
            .mode = mode,
            .note = {},
            .isEnabled = isEnabled,
            .caseSensitive = caseSensitive});
    };
    using Mode = LumaphoneGlossaryTermMode;
    add("Lumaphone", "", Mode::preserve, true, false);
    add("latency", "延遲時間", Mode::translate, true, false);
    add("Qt", "Qt", Mode::preserve, true, true);
    add("企画", "企劃", Mode::translate, false, false);
    studio.glossary->newTerm()->setSource(QStringLiteral("caption"));
    studio.glossary->newTerm()->setTarget(QStringLiteral("字幕"));
    studio.glossary->newTerm()->setMode(QStringLiteral("translate"));
    studio.photograph(target, QStringLiteral("glossary-filled"));
    studio.glossary->edit(1);
    studio.photograph(target, QStringLiteral("glossary-editing"));
    studio.glossary->cancelEditing();
    replaceFile(user.path() + QStringLiteral("/notes.txt"), "x", Durability::renamed);
    studio.glossary->importFiles({QUrl::fromLocalFile(user.path() + QStringLiteral("/notes.txt"))});
    if (!waitUntil([&] { return !studio.glossary->isImporting(); })) {
        throw std::runtime_error("The import did not end.");
    }
    studio.photograph(target, QStringLiteral("glossary-import-error"));
}

void awaitModels(const Studio &studio, const std::function<bool()> &condition)
{
    if (!waitUntil(condition, 30000)) {
        throw std::runtime_error("The models did not come: "
            + studio.models->data(studio.models->index(0), ModelsModel::StatusTextRole)
                  .toString()
                  .toStdString());
    }
}

bool isIdle(const Studio &studio)
{
    return !studio.models->isInstalling();
}

/// The inspector's list of models and the sheet that offers them.
void photographModels(const QString &target)
{
    enum Rows { english, japanese, korean, englishSpeech, speech };
    {
        const UserFolder user;
        Studio studio(user.path());
        studio.open(QSize(1040, 680));
        studio.photograph(target, QStringLiteral("models-missing"));
        studio.object(QStringLiteral("inspector.flickable")).setProperty("contentY", 240);
        studio.photograph(target, QStringLiteral("models-bundled"));
        QMetaObject::invokeMethod(&studio.object(QStringLiteral("inspectorPanel")), "modelLicenceWanted",
            Q_ARG(QString, studio.catalogue.entry(QStringLiteral("english-speech")).title),
            Q_ARG(QString, studio.models->licence(englishSpeech)));
        studio.photograph(target, QStringLiteral("models-bundled-licence"));
        QMetaObject::invokeMethod(&studio.object(QStringLiteral("modelLicence")), "close");
        studio.object(QStringLiteral("inspector.flickable")).setProperty("contentY", 0);
        studio.modelOffer->languageChosen(QStringLiteral("japanese"));
        studio.photograph(target, QStringLiteral("models-offer"));
        QMetaObject::invokeMethod(&studio.object(QStringLiteral("modelOffer")), "close");
        studio.modelOffer->languageChosen(QStringLiteral("automatic"));
        studio.photograph(target, QStringLiteral("models-offer-automatic"));
        QMetaObject::invokeMethod(&studio.object(QStringLiteral("modelOffer")), "close");
        studio.modelOffer->want(speech);
        studio.photograph(target, QStringLiteral("models-licence"));
    }
    const UserFolder user;
    Studio studio(user.path());
    FileServer server;
    studio.catalogue = servedModels(server, [](const ModelEntry &entry) {
        return qsizetype(entry.kind == ModelKind::speech ? 16'300'000 : 5'900'000);
    });
    studio.open(QSize(1040, 680));
    studio.models->install(english);
    awaitModels(studio, [&] { return isIdle(studio); });
    server.status = 503;
    studio.models->install(korean);
    awaitModels(studio, [&] { return isIdle(studio); });
    server.status.reset();
    server.muteAfter = 4'200'000;
    studio.modelOffer->languageChosen(QStringLiteral("japanese"));
    studio.modelOffer->accept();
    awaitModels(studio, [&] {
        return studio.models->data(studio.models->index(speech), ModelsModel::ProgressRole).toDouble() > 0.2;
    });
    studio.photograph(target, QStringLiteral("models-offer-installing"));
    QMetaObject::invokeMethod(&studio.object(QStringLiteral("modelOffer")), "close");
    studio.object(QStringLiteral("inspector.flickable")).setProperty("contentY", 160);
    studio.photograph(target, QStringLiteral("models-installing"));
    studio.modelOffer->cancel();
    awaitModels(studio, [&] { return isIdle(studio); });
    server.muteAfter.reset();
    server.status = 404;
    studio.modelOffer->languageChosen(QStringLiteral("japanese"));
    studio.modelOffer->accept();
    awaitModels(studio, [&] { return isIdle(studio); });
    studio.photograph(target, QStringLiteral("models-offer-failed"));
    server.status.reset();
    studio.modelOffer->accept();
    awaitModels(studio, [&] { return isIdle(studio); });
    studio.photograph(target, QStringLiteral("models-offer-ready"));
    QMetaObject::invokeMethod(&studio.object(QStringLiteral("modelOffer")), "close");
    studio.models->install(korean);
    awaitModels(studio, [&] { return isIdle(studio); });
    studio.photograph(target, QStringLiteral("models-ready"));
    QMetaObject::invokeMethod(&studio.object(QStringLiteral("inspectorPanel")), "modelRemovalWanted",
        Q_ARG(int, english), Q_ARG(QString, QStringLiteral("英文翻譯成繁體中文")),
        Q_ARG(QString,
            studio.models->data(studio.models->index(english), ModelsModel::RemovalTextRole).toString()));
    studio.photograph(target, QStringLiteral("models-removing"));
}

/// What a new user sees, in the usual and in the smallest window.
void photographWelcome(const QString &target)
{
    for (const bool isSmall : {false, true}) {
        const UserFolder user;
        Studio studio(user.path());
        studio.welcome = std::make_unique<WelcomeModel>(studio.session.settings, false);
        studio.open(isSmall ? QSize(1040, 680) : QSize(1280, 800));
        studio.photograph(target, isSmall ? QStringLiteral("welcome-small") : QStringLiteral("welcome"));
    }
}

} // namespace

int main(int argc, char *argv[])
{
    QStringList arguments;
    for (int index = 1; index < argc; ++index) {
        arguments.append(QString::fromLocal8Bit(argv[index]));
    }
    const bool isRenewing = arguments.removeOne(QStringLiteral("--renew"));
    const bool isComparing = arguments.removeOne(QStringLiteral("--compare"));
    const bool isKeeping = isRenewing || isComparing;
    Studio::setHighContrast(arguments.removeOne(QStringLiteral("--high-contrast")));
    Studio::setSmallest(arguments.removeOne(QStringLiteral("--smallest")));
    if (arguments.isEmpty() || arguments.size() > 2 || (isKeeping && arguments.size() != 2)) {
        std::fprintf(stderr,
            "Usage: lumaphone-photographs [--high-contrast] [--smallest] FOLDER [SUBJECT]\n"
            "       lumaphone-photographs --compare|--renew KEPT FOLDER\n");
        return 2;
    }
    const QString &target = isKeeping ? arguments[1] : arguments[0];
    const QString subject = !isKeeping && arguments.size() == 2 ? arguments[1] : QString();
    try {
        const auto kept = isKeeping ? std::optional<KeptPictures>(arguments[0]) : std::nullopt;
        if (kept) {
            QDir(target).removeRecursively();
            Studio::setChosen(kept->names());
        }
        // Room for the window at twice its size.
        const PrivateDisplay display(QSize(2720, 1800));
        // Away from the window, where it would look as if somebody were about to click.
        display.control({QStringLiteral("mousemove"), QStringLiteral("2719"), QStringLiteral("1799")});
        const QGuiApplication application(argc, argv);
        const std::vector<std::pair<QString, void (*)(const QString &)>> subjects {
            {QStringLiteral("live"), &photographLive},
            {QStringLiteral("stage"), &photographStage},
            {QStringLiteral("sound"), &photographSound},
            {QStringLiteral("menus"), &photographMenus},
            {QStringLiteral("provider"), &photographProvider},
            {QStringLiteral("library"), &photographLibrary},
            {QStringLiteral("glossary"), &photographGlossary},
            {QStringLiteral("models"), &photographModels},
            {QStringLiteral("welcome"), &photographWelcome},
            {QStringLiteral("panel"), &photographPanel},
            {QStringLiteral("reading"), &photographReading},
        };
        for (const auto &[name, photographSubject] : subjects) {
            if (kept ? kept->hasSubject(name) : subject.isEmpty() || name == subject) {
                photographSubject(target);
            }
        }
        if (isRenewing) {
            kept->renew(target);
        } else if (isComparing) {
            const QStringList changes = kept->changes(target);
            std::fprintf(stderr, "%s",
                qPrintable(changes.join(u'\n') + (changes.isEmpty() ? QString() : QStringLiteral("\n"))));
            return changes.isEmpty() ? 0 : 1;
        }
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
