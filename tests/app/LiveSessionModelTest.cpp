#include "app/live/LiveSessionModel.h"

#include "app/OffscreenTest.h"
#include "glossary/LumaphoneGlossaryStore.h"
#include "storage/TranscriptLibraryStore.h"
#include "support/LiveSession.h"
#include "support/NotingFileViewer.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace livesessionmodeltest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

LumaphoneGlossaryTerm glossaryTerm(uint number, const QString &source)
{
    LumaphoneGlossaryTerm term;
    term.id = countedUuid(number);
    term.source = source;
    return term;
}

/// A live session with the model of its views.
struct Views
{
    QTemporaryDir folder;
    NotingFileViewer fileViewer;
    LiveSession session {folder.filePath(QStringLiteral("Drafts"))};
    std::unique_ptr<LumaphoneGlossaryStore> glossary;
    std::unique_ptr<TranscriptLibraryStore> library;
    std::unique_ptr<LiveSessionModel> model;

    explicit Views(const QString &libraryPath = {},
        const LivePatience &patience = {std::chrono::hours(1), std::chrono::hours(1)})
    {
        session.make();
        glossary = std::make_unique<LumaphoneGlossaryStore>(
            folder.filePath(QStringLiteral("Glossary")), FileRevealer(), countedUuids());
        library = std::make_unique<TranscriptLibraryStore>(TranscriptLibraryStore::Environment {
            .layout = TranscriptLibraryLayout::at(
                libraryPath.isEmpty() ? folder.filePath(QStringLiteral("Transcripts")) : libraryPath),
            .areRevisions = [](const QString &, const QString &) { return false; },
            .clock = *session.clock,
            .fileViewer = fileViewer,
            .makeUuid = countedUuids(),
            .locale = QLocale::c(),
        });
        model = std::make_unique<LiveSessionModel>(
            *session.controller, session.settings, *library, *glossary, patience);
    }

    /// The model of a program that is started again, with the draft of the one before.
    LiveSessionModel &startAgain()
    {
        model.reset();
        session.make();
        model
            = std::make_unique<LiveSessionModel>(*session.controller, session.settings, *library, *glossary);
        return *model;
    }

    void start() const
    {
        model->startOrStop();
        settle();
    }
    /// A stopped session with one line.
    void speakAndStop() const
    {
        start();
        session.final("おはようございます。");
        session.clock->advance(std::chrono::seconds(2));
        settle();
        model->startOrStop();
        settle();
    }
};

} // namespace

class LiveSessionModelTest : public QObject
{
    Q_OBJECT

private slots:
    void theOneButtonStartsAndStops()
    {
        Views views;
        QCOMPARE(views.model->startStopText(), "開始");
        QVERIFY(!views.model->canSave());
        QVERIFY(!views.model->canClear());
        QVERIFY(!views.model->canStartNew());
        views.session.nextPipeline->gate.close();
        views.start();
        QVERIFY(views.model->isStarting());
        QCOMPARE(views.model->startStopText(), "停止");
        QCOMPARE(views.model->startStopSymbol(), "stop.circle.fill");
        QCOMPARE(views.model->stageStateText(), "正在準備");
        views.session.nextPipeline->gate.open();
        settle();
        QVERIFY(views.model->isRunning());
        QVERIFY(!views.model->isStarting());
        QCOMPARE(views.model->startStopText(), "停止");
        QCOMPARE(views.model->startStopSymbol(), "stop.circle.fill");
        QCOMPARE(views.model->translationText(), "字幕會在這裡跟上。");
        views.model->startOrStop();
        QVERIFY(!views.model->isRunning());
        QCOMPARE(views.model->startStopText(), "開始");
    }

    void aStartCanBeGivenUp()
    {
        Views views;
        views.session.nextPipeline->gate.close();
        views.start();
        views.model->startOrStop();
        QVERIFY(!views.model->isStarting());
        QCOMPARE(views.session.nextPipeline->stops, 1);
        QCOMPARE(views.model->startStopText(), "開始");
        views.session.nextPipeline->gate.open();
        settle();
        QVERIFY(!views.model->isRunning());
        QVERIFY(views.model->failureMessage().isEmpty());
        views.start();
        QVERIFY(views.model->isRunning());
        QCOMPARE(views.session.nextPipeline->starts, 2);
    }

    void theStageFollowsTheNewestLine()
    {
        Views views;
        views.start();
        QSignalSpy sourceChanged(views.model.get(), &LiveSessionModel::sourceTextChanged);
        views.session.partial("おはよう");
        QCOMPARE(views.model->sourceText(), "おはよう");
        QCOMPARE(views.model->translationText(), "正在整理成台灣繁中...");
        QCOMPARE(views.model->stageLanguage(), "japanese");
        QCOMPARE(views.model->languageStatusText(), "自動：日文");
        QCOMPARE(views.model->cardStatusText(), "還有句子正在收尾");
        QVERIFY(!views.model->isStageFinal());
        QVERIFY(!views.model->isStageTranslated());
        QCOMPARE(sourceChanged.size(), 1);
        views.session.final("おはよう");
        views.session.clock->advance(std::chrono::seconds(2));
        settle();
        QCOMPARE(views.model->translationText(), "譯:おはよう");
        QCOMPARE(views.model->cardStatusText(), "已整理成字幕稿");
        QVERIFY(views.model->isStageFinal());
        QVERIFY(views.model->isStageTranslated());
        QCOMPARE(sourceChanged.size(), 1);
    }

    void linesAndStatesAreAnnouncedOnce()
    {
        Views views;
        QStringList announced;
        connect(views.model.get(), &LiveSessionModel::announced, views.model.get(),
            [&announced](const QString &text) { announced.append(text); });
        views.start();
        QCOMPARE(announced, QStringList({"正在聽"}));
        views.session.partial("おはよう");
        settle();
        QCOMPARE(announced.size(), 1);
        views.session.final("おはよう。");
        views.session.clock->advance(std::chrono::seconds(2));
        settle();
        QCOMPARE(announced.mid(1), QStringList({"譯:おはよう。"}));
        views.model->startOrStop();
        settle();
        QCOMPARE(announced.mid(2), QStringList({"已停止，尚未儲存"}));
        views.model->saveTranscript();
        settle();
        QCOMPARE(announced.mid(3), QStringList({"已儲存：" + views.model->savedTitle()}));
        views.model->saveTranscript();
        settle();
        QCOMPARE(announced.size(), 5); // the user has asked twice
        views.model->startNew();
        settle();
        QCOMPARE(announced.mid(5), QStringList({"正在聽"}));
    }

    void aSessionThatBreaksOffIsAnnouncedByItsReasonAlone()
    {
        Views views;
        views.start();
        QStringList announced;
        connect(views.model.get(), &LiveSessionModel::announced, views.model.get(),
            [&announced](const QString &text) { announced.append(text); });
        views.session.controller->handlePipelineEvent(pipeline_event::Failed {"no more sound"});
        settle();
        QCOMPARE(announced, QStringList({views.model->failureMessage()}));
        QVERIFY(!announced.first().isEmpty());
    }

    void stoppedLinesAreReviewedAndSaved()
    {
        Views views;
        views.speakAndStop();
        QVERIFY(views.model->isReviewing());
        QVERIFY(views.model->hasUnsavedTranscript());
        QCOMPARE(views.model->startStopText(), "重開");
        QCOMPARE(views.model->saveHelp(), "儲存字幕紀錄");
        views.glossary->add(glossaryTerm(90, "おはよう"));
        views.glossary->add(glossaryTerm(91, "さようなら"));

        const QString draft = LumaphoneSessionDraftStore(views.folder.filePath("Drafts")).draftPath();
        QVERIFY(QFile::exists(draft));
        views.model->saveTranscript();
        QVERIFY(views.model->isSaved());
        QVERIFY(!QFile::exists(draft)); // nothing is offered as unsaved at the next start
        QVERIFY(!views.model->hasUnsavedTranscript());
        QCOMPARE(views.model->startStopText(), "開始");
        QCOMPARE(views.model->saveHelp(), "更新字幕紀錄");
        QCOMPARE(views.library->records().size(), 1);
        const TranscriptRecordMetadata saved = views.library->records().first();
        QCOMPARE(views.model->savedTitle(), saved.title);
        QCOMPARE(saved.glossaryTerms.size(), 1);
        QCOMPARE(saved.glossaryTerms.first().source, "おはよう");

        views.model->saveTranscript();
        QCOMPARE(views.library->records().size(), 1);
        QCOMPARE(views.library->records().first().id, saved.id);
    }

    void aSaveThatFailsSaysWhyAndKeepsTheLines()
    {
        Views views(QStringLiteral("/dev/null/Transcripts"));
        views.speakAndStop();
        views.model->saveTranscript();
        QVERIFY2(views.model->saveErrorMessage().contains("/dev/null/Transcripts"),
            qPrintable(views.model->saveErrorMessage()));
        QVERIFY(views.model->hasUnsavedTranscript());
        QCOMPARE(views.model->lines()->rowCount(), 1);
        views.model->clearCaptions();
        QVERIFY(views.model->saveErrorMessage().isEmpty());
    }

    void unsavedLinesAreNotOverwritten()
    {
        Views views;
        views.speakAndStop();
        views.model->startOrStop();
        settle();
        QVERIFY(!views.model->isRunning());
        QCOMPARE(views.model->lines()->rowCount(), 1);
        QCOMPARE(views.model->status(), "上一段 Transcript 尚未儲存。請先儲存或清除，再開始新的 Session。");
        QVERIFY(views.model->failureMessage().isEmpty());
        QCOMPARE(views.model->stageStateText(), "已停止，尚未儲存");
    }

    void newCaptionsDropTheOldOnesAndStartAtOnce()
    {
        Views views;
        views.speakAndStop();
        QCOMPARE(views.model->newCaptionsHelp(), "捨棄上一段並立刻開始新的字幕");
        views.model->startNew();
        settle();
        QVERIFY(views.model->isRunning());
        QCOMPARE(views.model->lines()->rowCount(), 0);
    }

    void aSessionThatBreaksOffSaysWhy()
    {
        Views views;
        views.start();
        views.session.final("おはよう。");
        views.session.controller->handlePipelineEvent(pipeline_event::Failed {"音訊服務已停止"});
        QCOMPARE(views.model->failureMessage(), "音訊服務已停止");
        QVERIFY(views.model->hasFailed());
        QCOMPARE(views.model->stageStateText(), "已中斷，尚未儲存");
        QVERIFY(views.model->isReviewing());
        views.model->startNew();
        settle();
        QVERIFY(views.model->failureMessage().isEmpty());
    }

    void silenceIsToldAndForgottenWithTheFirstSound()
    {
        Views views({}, {.withSilence = std::chrono::milliseconds(1)});
        QVERIFY(!views.model->isWithoutSound());
        views.start();
        QVERIFY(waitUntil([&] { return views.model->isWithoutSound(); }));
        QCOMPARE(views.model->stageStateText(), "沒有聲音");
        auto &controller = *views.session.controller;
        controller.handlePipelineEvent(pipeline_event::AudioSample {{"320 frames", true}});
        QVERIFY(views.model->isWithoutSound());
        controller.handlePipelineEvent(pipeline_event::AudioSample {{"320 frames", false}});
        QVERIFY(!views.model->isWithoutSound());
        views.model->startOrStop();
        QVERIFY(!views.model->isWithoutSound());
    }

    void aRestoredDraftIsReviewed()
    {
        Views views;
        views.start();
        views.session.final("おはよう。");
        LiveSessionModel &model = views.startAgain();
        QCOMPARE(model.restoredDraftMessage(), "已恢復上一段尚未儲存的字幕。");
        QCOMPARE(model.stageStateText(), "已恢復，尚未儲存");
        QVERIFY(model.isReviewing());
        QCOMPARE(model.lines()->rowCount(), 1);
        QCOMPARE(model.sourceText(), "おはよう。");
    }

    void savingARestoredSessionGivesItNoEnd()
    {
        Views views;
        views.start();
        views.session.final("おはよう。");
        // As after a crash: the session was never stopped.
        LiveSessionModel &model = views.startAgain();
        QVERIFY(!views.session.controller->sessionEndedAt());
        model.saveTranscript();
        QVERIFY(model.isSaved());
        QVERIFY(!views.session.controller->sessionEndedAt());
        QVERIFY(!views.library->records().first().endedAt);
        model.saveTranscript(); // brings the record up to date
        QVERIFY(!views.library->records().first().endedAt);
    }

    void aRestoredDraftGetsItsTranslationsWhenTheyCanBeHad()
    {
        Views views;
        views.session.settings.setProcessingMode(LumaphoneProcessingMode::customAPI);
        views.session.settings.setProviderBaseURL("http://server/v1");
        bool canTranslate = false;
        views.session.translator->plan = [&canTranslate](const QString &) {
            return ScriptedTranslator::Plan {{}, canTranslate ? QString() : QString("no model")};
        };
        views.start();
        views.session.final("おはよう。");
        settle();
        LiveSessionModel &model = views.startAgain();
        settle();
        QCOMPARE(views.session.translator->calls.size(), std::size_t(2));
        QVERIFY(!model.isStageTranslated());
        canTranslate = true;
        views.session.settings.setProviderModel("another");
        settle();
        QVERIFY(model.isStageTranslated());
        QCOMPARE(model.translationText(), "譯:おはよう。");
    }

    void whatHasNoTranslationSaysSoAndIsTriedAgainWhenAsked()
    {
        Views views;
        bool canTranslate = false;
        views.session.translator->plan = [&canTranslate](const QString &) {
            return ScriptedTranslator::Plan {{}, canTranslate ? QString() : QString("no model")};
        };
        views.start();
        for (const char *text : {"おはよう。", "Good morning everyone", "세 번째 문장"}) {
            views.session.final(text);
            settle();
        }
        CaptionLinesModel &lines = *views.model->lines();
        QCOMPARE(views.model->translationText(), "這一句沒有翻譯。");
        QVERIFY(!views.model->isStageTranslated());
        QCOMPARE(views.model->cardStatusText(), "有 3 句沒有翻譯");
        const QModelIndex row = lines.index(1);
        QVERIFY(!row.data(CaptionLinesModel::IsPendingRole).toBool());
        QVERIFY(row.data(CaptionLinesModel::IsFailedRole).toBool());
        QCOMPARE(row.data(CaptionLinesModel::TranslatedTextRole), "這一句沒有翻譯。");
        QCOMPARE(row.data(CaptionLinesModel::FailureRole), "no model");

        canTranslate = true;
        views.model->translateLineAgain(1);
        QVERIFY(row.data(CaptionLinesModel::IsPendingRole).toBool());
        QCOMPARE(views.model->cardStatusText(), "還有句子正在收尾");
        settle();
        QCOMPARE(row.data(CaptionLinesModel::TranslatedTextRole), "譯:Good morning everyone");
        QCOMPARE(views.model->cardStatusText(), "有 2 句沒有翻譯");
        views.model->translateAgain();
        settle();
        QCOMPARE(views.model->cardStatusText(), "已整理成字幕稿");
        QCOMPARE(views.model->translationText(), "譯:세 번째 문장");
        views.model->translateLineAgain(7);
    }

    void nothingIsSaidToBeComingWhenNothingIs_data()
    {
        QTest::addColumn<bool>("fails");
        QTest::addColumn<bool>("breaksOff");
        QTest::newRow("translated") << false << false;
        QTest::newRow("not translated") << true << false;
        QTest::newRow("broken off, translated") << false << true;
        QTest::newRow("broken off, not translated") << true << true;
    }
    void nothingIsSaidToBeComingWhenNothingIs()
    {
        QFETCH(bool, fails);
        QFETCH(bool, breaksOff);
        for (const bool isLastFinal : {true, false}) {
            Views views;
            views.session.translator->plan = [fails](const QString &) {
                return ScriptedTranslator::Plan {
                    std::chrono::seconds(2), fails ? QString("壞了") : QString()};
            };
            views.start();
            views.session.final("一番目の文です");
            views.session.clock->advance(std::chrono::seconds(15));
            views.session.speech("二番目の文", isLastFinal);
            if (breaksOff) {
                views.session.controller->handlePipelineEvent(pipeline_event::Failed {"擷取中斷"});
            } else {
                views.model->startOrStop();
            }
            QCOMPARE(views.model->translationText(), "正在整理成台灣繁中...");
            QVERIFY(views.session.controller->isTranslating());
            views.session.clock->advance(std::chrono::seconds(30));
            settle();
            QVERIFY(!views.session.controller->isTranslating());
            QCOMPARE(views.model->translationText(), fails ? "這一句沒有翻譯。" : "譯:二番目の文");
            QVERIFY(!views.model->lines()->hasPendingTranslation());
        }
    }

    void translationsThatComeAfterSavingReachTheRecord_data()
    {
        QTest::addColumn<bool>("startsNext");
        QTest::addColumn<bool>("clearsBefore");
        QTest::newRow("the session stays") << false << false;
        QTest::newRow("the next one starts") << true << false;
        QTest::newRow("it is cleared for the next one") << true << true;
    }
    void translationsThatComeAfterSavingReachTheRecord()
    {
        QFETCH(bool, startsNext);
        QFETCH(bool, clearsBefore);
        Views views;
        views.session.translator->plan = [](const QString &) {
            return ScriptedTranslator::Plan {std::chrono::seconds(2), QString()};
        };
        views.start();
        for (const char *text : {"一番目の文です", "Second sentence"}) {
            views.session.final(text);
            views.session.clock->advance(std::chrono::seconds(15));
        }
        views.session.final("So this is the third sentence");
        views.session.final("그리고 이것이 우리의 마지막 네 번째 문장입니다");
        views.model->startOrStop();
        views.model->saveTranscript();
        const QUuid record = views.library->records().first().id;
        QCOMPARE(views.library->loadRecord(record).lines.size(), 4);
        QVERIFY(views.library->loadRecord(record).lines[3].translatedText.isEmpty());
        TranscriptDocument renamed = views.library->loadRecord(record);
        renamed.metadata.title = "Renamed by the user";
        views.library->update(renamed);
        if (clearsBefore) {
            views.model->startNew();
        } else if (startsNext) {
            views.model->startOrStop();
        }
        settle();
        QCOMPARE(views.model->isRunning(), startsNext);
        views.session.clock->advance(std::chrono::seconds(20));
        settle();
        const TranscriptDocument saved = views.library->loadRecord(record);
        QCOMPARE(saved.lines[2].translatedText, "譯:So this is the third sentence");
        QCOMPARE(saved.lines[3].translatedText, "譯:그리고 이것이 우리의 마지막 네 번째 문장입니다");
        QCOMPARE(saved.metadata.title, "Renamed by the user");
        QCOMPARE(views.library->records().size(), 1);
    }

    void theEndWaitsForTheLastTranslationsAndKeepsThem()
    {
        Views views;
        views.session.translator->plan = [](const QString &) {
            return ScriptedTranslator::Plan {std::chrono::seconds(1), QString()};
        };
        views.start();
        views.session.final("一番目の文です");
        settle();
        QSignalSpy ended(views.model.get(), &LiveSessionModel::ended);
        views.model->endSession();
        QVERIFY(!views.model->isRunning());
        QCOMPARE(ended.size(), 0);
        views.session.clock->advance(std::chrono::seconds(2));
        QCOMPARE(ended.size(), 1);
        const auto draft = LumaphoneSessionDraftStore(views.session.draftFolder).load();
        QCOMPARE(draft->lines.first().translatedText, "譯:一番目の文です");
    }

    void theEndWaitsNoLongerThanAMoment()
    {
        Views views({}, {.withLastTranslations = std::chrono::milliseconds(1)});
        views.session.translator->plan = [](const QString &) {
            return ScriptedTranslator::Plan {std::chrono::hours(1), QString()};
        };
        views.start();
        views.session.final("一番目の文です");
        settle();
        QSignalSpy ended(views.model.get(), &LiveSessionModel::ended);
        views.model->endSession();
        QCOMPARE(ended.size(), 0);
        QVERIFY(ended.wait());
        QVERIFY(LumaphoneSessionDraftStore(views.session.draftFolder).load().has_value());
    }

    void aWholeSideCanBeCopied()
    {
        Views views;
        views.speakAndStop();
        views.model->joinedTranslatedText()->copy();
        QCOMPARE(QGuiApplication::clipboard()->text(), "譯:おはようございます。");
        views.model->joinedSourceText()->copy();
        QCOMPARE(QGuiApplication::clipboard()->text(), "おはようございます。");
    }

    void anUnknownLanguageIsIgnored()
    {
        Views views;
        views.model->setSourceLanguage(QStringLiteral("korean"));
        QCOMPARE(views.model->sourceLanguage(), "korean");
        QCOMPARE(views.model->languageStatusText(), "韓文");
        views.model->setSourceLanguage(QStringLiteral("Klingon"));
        QCOMPARE(views.model->sourceLanguage(), "korean");
    }

    void closingEndsARunningSessionAndKeepsItsDraft()
    {
        Views views;
        views.start();
        views.session.final("おはよう。");
        settle();
        QSignalSpy ended(views.model.get(), &LiveSessionModel::ended);
        views.model->endSession();
        QVERIFY(!views.model->isRunning());
        QVERIFY(ended.size() == 1 || ended.wait());
        QVERIFY(LumaphoneSessionDraftStore(views.session.draftFolder).load().has_value());
    }
};

LUMAPHONE_OFFSCREEN_TEST(LiveSessionModelTest)

} // namespace livesessionmodeltest

#include "LiveSessionModelTest.moc"
