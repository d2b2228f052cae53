#include "photographs/Studio.h"

#include "app/QmlEngineSetup.h"
#include "session/SoundCheck.h"
#include "support/Coroutines.h"
#include "support/FolderResources.h"
#include "support/VisibleItems.h"

#include <QDir>
#include <QImage>
#include <QTest>

#include <algorithm>
#include <stdexcept>

namespace lumaphone::test {

namespace {

QLocale taiwan()
{
    return {QLocale::Chinese, QLocale::TraditionalChineseScript, QLocale::Taiwan};
}

/// Whether no sheet or menu is on its way in or out, however slow the machine is.
bool areSheetsAtRest(const QQuickWindow &window)
{
    const auto objects = window.findChildren<QObject *>();
    return std::none_of(objects.begin(), objects.end(), [](const QObject *object) {
        return object->inherits("QQuickPopup") && object->property("visible").toBool()
            && !object->property("opened").toBool();
    });
}

/// The window when nothing in it moves any more; what never rests is taken as it is.
QImage pictureAtRest(QQuickWindow &window)
{
    constexpr int mostFrames = 40;
    constexpr int framesAtRest = 3;
    QImage picture = window.grabWindow();
    for (int frame = 0, same = 0; frame < mostFrames && same < framesAtRest; ++frame) {
        drawFrame(window);
        const QImage next = window.grabWindow();
        same = next == picture ? same + 1 : 0;
        picture = next;
    }
    return picture;
}

QStringList chosenPictures;
bool isContrastHigh = false;
bool areWindowsSmallest = false;

} // namespace

Studio::Studio(const QString &userFolder, std::chrono::milliseconds soundPatience)
    : session(userFolder + QStringLiteral("/Drafts"))
    , folder(userFolder)
{
    shipBundledModel(m_program.path());
    session.make();
    glossaryStore = std::make_unique<LumaphoneGlossaryStore>(
        folder + QStringLiteral("/Glossary"), FileRevealer(), countedUuids());
    library = std::make_unique<TranscriptLibraryStore>(TranscriptLibraryStore::Environment {
        .layout = TranscriptLibraryLayout::at(folder + QStringLiteral("/Transcripts")),
        .areRevisions = [](const QString &, const QString &) { return false; },
        .clock = *session.clock,
        .fileViewer = fileViewer,
        .makeUuid = countedUuids(),
        .locale = taiwan(),
    });
    live = std::make_unique<LiveSessionModel>(*session.controller, session.settings, *library, *glossaryStore,
        LivePatience {.withSilence = soundPatience});
    soundTest = std::make_unique<SoundTestModel>(*session.controller,
        std::make_unique<SoundCheck>(
            session.screenAudio, session.microphone, session.clock, session.mainQueue),
        soundPatience);
    inspector = std::make_unique<InspectorModel>(*session.controller, session.settings, *glossaryStore);
    provider = std::make_unique<ProviderSettingsModel>(session.settings, session.clock, session.mainQueue);
    workspace = std::make_unique<TranscriptLibraryWorkspaceModel>(*library, taiwan());
    glossary = std::make_unique<GlossarySettingsModel>(*glossaryStore, session.mainQueue, countedUuids());
    floatingCaptions
        = std::make_unique<FloatingCaptionWindowController>(session.settings, session.clock, [this] {
              return std::make_unique<FloatingCaptionPanel>(*engine,
                  QUrl(QStringLiteral("qrc:/qt/qml/Lumaphone/Floating/FloatingCaptionView.qml")),
                  QVariantMap {{QStringLiteral("settings"), QVariant::fromValue(&session.settings)},
                      {QStringLiteral("reader"), QVariant::fromValue(floatingCaptions->reader())}});
          });
    floatingCaptions->reader()->observe(*session.controller);
}

Studio::~Studio()
{
    floatingCaptions->close(); // its panel is the engine's
    engine.reset();
    floatingCaptions.reset();
    modelOffer.reset();
    models.reset();
    glossary.reset();
    workspace.reset();
    provider.reset();
    inspector.reset();
    soundTest.reset();
    live.reset();
}

void Studio::setChosen(const QStringList &pictures)
{
    chosenPictures = pictures;
}

void Studio::setHighContrast(bool isHigh)
{
    isContrastHigh = isHigh;
}

void Studio::setSmallest(bool isSmallest)
{
    areWindowsSmallest = isSmallest;
}

void Studio::open(QSize size)
{
    if (areWindowsSmallest) {
        size = QSize(1040, 680);
    }
    modelStore = std::make_unique<ModelStore>(
        folder + QStringLiteral("/Models"), catalogue, std::make_shared<FolderResources>(m_program.path()));
    models = std::make_unique<ModelsModel>(*modelStore, session.mainQueue);
    modelOffer = std::make_unique<ModelOffer>(*models, session.settings,
        [](AppleSystemSpeechLanguage language) { return language == AppleSystemSpeechLanguage::english; });
    engine = std::make_unique<QQmlApplicationEngine>();
    setUpQmlEngine(*engine);
    engine->setInitialProperties({
        {QStringLiteral("session"), QVariant::fromValue(live.get())},
        {QStringLiteral("inspector"), QVariant::fromValue(inspector.get())},
        {QStringLiteral("provider"), QVariant::fromValue(provider.get())},
        {QStringLiteral("floatingCaptions"), QVariant::fromValue(floatingCaptions.get())},
        {QStringLiteral("transcriptLibrary"), QVariant::fromValue(workspace.get())},
        {QStringLiteral("glossary"), QVariant::fromValue(glossary.get())},
        {QStringLiteral("modelOffer"), QVariant::fromValue(modelOffer.get())},
        {QStringLiteral("welcome"), QVariant::fromValue(welcome.get())},
        {QStringLiteral("diagnosis"), QVariant::fromValue(diagnosis.get())},
        {QStringLiteral("soundTest"), QVariant::fromValue(soundTest.get())},
        {QStringLiteral("isHighContrast"), isContrastHigh},
        {QStringLiteral("width"), size.width()},
        {QStringLiteral("height"), size.height()},
    });
    engine->load(QUrl(QStringLiteral("qrc:/qt/qml/Lumaphone/Main.qml")));
    window = engine->rootObjects().isEmpty() ? nullptr
                                             : qobject_cast<QQuickWindow *>(engine->rootObjects().first());
    if (!window) {
        throw std::runtime_error("The window could not be loaded.");
    }
    window->show();
    if (!QTest::qWaitForWindowExposed(window)) {
        throw std::runtime_error("The window did not appear.");
    }
    settle();
}

void Studio::photograph(const QString &target, const QString &name)
{
    QDir().mkpath(target);
    for (const bool isDark : {false, true}) {
        const QString picture = name + (isDark ? QStringLiteral("-dark") : QStringLiteral("-light"));
        if (!chosenPictures.isEmpty() && !chosenPictures.contains(picture)) {
            continue;
        }
        window->setProperty("isDark", isDark);
        // The last click has left the toolkit a pointer there.
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(window, &leave);
        settle();
        if (!waitUntil([this] { return areSheetsAtRest(*window); })) {
            throw std::runtime_error("A sheet does not finish opening or closing.");
        }
        const QString path = QStringLiteral("%1/%2.png").arg(target, picture);
        if (!pictureAtRest(*window).save(path)) {
            throw std::runtime_error("A photograph could not be written: " + path.toStdString());
        }
    }
}

QObject &Studio::object(const QString &name) const
{
    auto *found = window->findChild<QObject *>(name);
    if (!found) {
        throw std::runtime_error("The window has no object " + name.toStdString());
    }
    return *found;
}

void Studio::click(const QString &name) const
{
    if (!clickOn(*window, name)) {
        throw std::runtime_error("There is nothing to click on: " + name.toStdString());
    }
}

bool Studio::focus(const QString &name) const
{
    QQuickItem *item = find(name);
    if (item == nullptr) {
        return false;
    }
    item->forceActiveFocus(Qt::TabFocusReason);
    return waitUntil([item] { return item->hasActiveFocus(); });
}

QQuickItem *Studio::find(const QString &name) const
{
    return findVisible(window->contentItem(), name);
}

QObject &Studio::content() const
{
    return *window->property("content").value<QObject *>();
}

void Studio::settle()
{
    test::settle();
}

void Studio::advance(std::chrono::milliseconds time)
{
    session.clock->advance(time);
    settle();
}

void Studio::say(
    const QString &text, const QString &translation, AppleSystemSpeechLanguage language, bool isFinal)
{
    if (!translation.isEmpty()) {
        session.translator->translations[text] = translation;
    }
    session.translator->plan = [never = translation.isEmpty() ? text : QString()](const QString &asked) {
        ScriptedTranslator::Plan plan;
        plan.delay = asked == never ? std::chrono::hours(24) : std::chrono::hours(0);
        return plan;
    };
    session.speech(text, isFinal, language);
    advance(std::chrono::seconds(1));
    advance(std::chrono::seconds(15));
}

void Studio::converse()
{
    using enum AppleSystemSpeechLanguage;
    say(QStringLiteral("おはようございます。今日は新しい企画について話します。"),
        QStringLiteral("早安。今天要來談新的企劃。"), japanese);
    say(QStringLiteral("まず来月の予定から確認しましょう。"),
        QStringLiteral("我們先從下個月的行程開始確認吧。"), japanese);
    say(QStringLiteral("予算は先週の会議で決まった通り、二百万円です。"),
        QStringLiteral("預算就照上週會議決定的，兩百萬日圓。"), japanese);
    say(QStringLiteral("デザインの初稿は金曜日までに出せると思います。"),
        QStringLiteral("設計初稿我想星期五以前交得出來。"), japanese);
    say(QStringLiteral("ちょっと待って、今のアイデアめちゃくちゃ良くない？"),
        QStringLiteral("等一下，剛剛那個點子也太可以了吧？"), japanese, false);
}

void Studio::holdSession()
{
    live->startOrStop();
    settle();
    converse();
    live->startOrStop();
    settle();
}

TranscriptRecordMetadata Studio::save(
    const QString &title, AppleSystemSpeechLanguage language, const QList<std::pair<QString, QString>> &lines)
{
    LiveTranscript transcript;
    transcript.sourceLanguage = language;
    transcript.startedAt = session.clock->now();
    for (const auto &[source, translation] : lines) {
        session.clock->advance(std::chrono::minutes(1));
        transcript.lines.append(
            {QUuid::createUuid(), source, translation, language, session.clock->now(), true});
    }
    const TranscriptRecordMetadata saved = library->save(transcript, session.settings);
    TranscriptDocument document = library->loadRecord(saved.id);
    document.metadata.title = title;
    document.metadata.glossaryTerms
        = {{QUuid::createUuid(), QStringLiteral("Lumaphone"), {}, LumaphoneGlossaryTermMode::preserve},
            {QUuid::createUuid(), QStringLiteral("企画"), QStringLiteral("企劃"),
                LumaphoneGlossaryTermMode::translate}};
    library->update(document);
    return saved;
}

} // namespace lumaphone::test
