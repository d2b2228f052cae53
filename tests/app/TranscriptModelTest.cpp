#include "app/live/TranscriptModel.h"

#include "app/OffscreenTest.h"
#include "app/live/CaptionLinesModel.h"
#include "support/LiveSession.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QTest>

namespace transcriptmodeltest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

/// A session of which a reader has marked something.
struct Transcript
{
    LiveSession session;
    CaptionLinesModel lines {session.started()};
    TranscriptModel model {lines};
    QAbstractItemModelTester tester {&model, QAbstractItemModelTester::FailureReportingMode::Fatal};

    void say(const char *source, const char *translation)
    {
        session.translator->translations[source] = translation;
        session.final(source);
        session.clock->advance(std::chrono::seconds(15));
        settle();
    }
    QVariantList marks(int row, int role) const { return model.index(row, 0).data(role).toList(); }
    static QString copied() { return QGuiApplication::clipboard()->text(); }
};

QVariantMap mark(int from, int to, TranscriptModel::MarkKind kind)
{
    return {{"from", from}, {"to", to}, {"kind", int(kind)}};
}

} // namespace

class TranscriptModelTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { QGuiApplication::clipboard()->setText("before"); }

    void itHasTheLinesAndWhatIsMarkedInThem()
    {
        Transcript transcript;
        transcript.say("おはようございます。", "早安。");
        const QModelIndex row = transcript.model.index(0, 0);
        QCOMPARE(row.data(CaptionLinesModel::SourceTextRole), "おはようございます。");
        QCOMPARE(transcript.marks(0, TranscriptModel::SourceMarksRole), QVariantList());
        QCOMPARE(transcript.model.roleNames().value(CaptionLinesModel::TimeRole), "time");
        QCOMPARE(transcript.model.roleNames().value(TranscriptModel::SourceMarksRole), "sourceMarks");
        transcript.model.beginSelection(0, false, 1);
        QVERIFY(!transcript.model.hasSelection());
        transcript.model.extendSelection(0, 4);
        QVERIFY(transcript.model.hasSelection());
        QCOMPARE(transcript.marks(0, TranscriptModel::SourceMarksRole),
            QVariantList({mark(1, 4, TranscriptModel::Selected)}));
        QCOMPARE(transcript.marks(0, TranscriptModel::TranslationMarksRole), QVariantList());
        QCOMPARE(row.data(TranscriptModel::IsSelectedRole), false);
        transcript.model.search("ご", 0);
        QCOMPARE(transcript.marks(0, TranscriptModel::SourceMarksRole),
            QVariantList({mark(1, 4, TranscriptModel::Selected), mark(4, 5, TranscriptModel::LookedAt)}));
    }

    void whatIsSelectedIsCopied()
    {
        Transcript transcript;
        transcript.say("一行目です。", "第一句。");
        transcript.say("二行目です。", "第二句。");
        transcript.model.copySelection();
        QCOMPARE(Transcript::copied(),
            "before"); // nothing takes the place of what was copied
        transcript.model.beginSelection(0, true, 1);
        transcript.model.extendSelection(1, 2);
        transcript.model.copySelection();
        QCOMPARE(Transcript::copied(), "一句。\n第二");
        transcript.model.selectAll();
        transcript.model.copySelection();
        QCOMPARE(Transcript::copied(), "一行目です。\n第一句。\n\n二行目です。\n第二句。");
        QCOMPARE(transcript.model.index(1, 0).data(TranscriptModel::IsSelectedRole), true);
        transcript.model.copyLine(1);
        QCOMPARE(Transcript::copied(), "二行目です。\n第二句。");
        transcript.model.copySource(0);
        QCOMPARE(Transcript::copied(), "一行目です。");
        transcript.model.copyTranslation(0);
        QCOMPARE(Transcript::copied(), "第一句。");
    }

    void whatStandsForATranslationIsNoText()
    {
        Transcript transcript;
        transcript.session.translator->plan = [](const QString &) {
            return ScriptedTranslator::Plan {{}, QStringLiteral("no model")};
        };
        transcript.say("おはよう。", "");
        QVERIFY(!transcript.model.hasTranslation(0));
        transcript.model.copyLine(0);
        QCOMPARE(Transcript::copied(), "おはよう。");
        transcript.model.search("翻譯", 0);
        QCOMPARE(transcript.model.foundCount(), 0);
        QVERIFY(!transcript.model.hasTranslation(7));
    }

    void theKeyboardSelectsWholeLines()
    {
        Transcript transcript;
        for (const char *source : {"一。", "二。", "三。"}) {
            transcript.say(source, source);
        }
        QSignalSpy changed(&transcript.model, &TranscriptModel::currentRowChanged);
        transcript.model.goTo(1);
        QCOMPARE(transcript.model.currentRow(), 1);
        QVERIFY(!transcript.model.hasSelection());
        transcript.model.selectTo(2);
        transcript.model.selectTo(3); // there is no fourth
        QCOMPARE(transcript.model.currentRow(), 2);
        transcript.model.copySelection();
        QCOMPARE(Transcript::copied(), "二。\n二。\n\n三。\n三。");
        transcript.model.selectTo(0);
        transcript.model.copySelection();
        QCOMPARE(Transcript::copied(), "一。\n一。\n\n二。\n二。");
        transcript.model.goTo(-5);
        QVERIFY(!transcript.model.hasSelection());
        QCOMPARE(changed.size(), 4);
    }

    void aWordIsSelected()
    {
        Transcript transcript;
        transcript.say("So the question is", "所以問題是");
        transcript.model.selectWord(0, false, 5);
        transcript.model.copySelection();
        QCOMPARE(Transcript::copied(), "the");
        transcript.model.selectWord(0, false, 18); // behind the last character
        transcript.model.copySelection();
        QCOMPARE(Transcript::copied(), "is");
    }

    void newLinesMoveNothing()
    {
        Transcript transcript;
        transcript.say("一行目。", "第一句。");
        transcript.model.beginSelection(0, false, 0);
        transcript.model.extendSelection(0, 2);
        transcript.model.search("句", 0);
        QCOMPARE(transcript.model.foundNumber(), 1);
        QSignalSpy selection(&transcript.model, &TranscriptModel::selectionChanged);
        transcript.say("二行目。", "第二句。");
        QCOMPARE(transcript.model.foundCount(), 2);
        QCOMPARE(transcript.model.foundNumber(), 1);
        QCOMPARE(transcript.model.foundRow(), 0);
        QCOMPARE(transcript.model.currentRow(), 0);
        QCOMPARE(selection.size(), 0);
        transcript.model.lookAtNext(1);
        QCOMPARE(transcript.model.foundRow(), 1);
        transcript.model.lookAtNext(1);
        QCOMPARE(transcript.model.foundRow(), 0);
        QCOMPARE(transcript.marks(1, TranscriptModel::TranslationMarksRole),
            QVariantList({mark(2, 3, TranscriptModel::Found)}));
    }

    void aNewSessionHasNothingMarked()
    {
        Transcript transcript;
        transcript.say("一行目。", "第一句。");
        transcript.model.selectAll();
        transcript.model.goTo(0);
        transcript.model.selectAll();
        transcript.model.search("行", 0);
        transcript.session.controller->clearCaptions();
        QVERIFY(!transcript.model.hasSelection());
        QCOMPARE(transcript.model.currentRow(), -1);
        QCOMPARE(transcript.model.foundCount(), 0);
        QCOMPARE(transcript.model.searchText(), "行"); // the field still says so
        transcript.model.selectTo(0);
        transcript.model.selectAll();
        QVERIFY(!transcript.model.hasSelection());
    }

    void aSelectionTellsOnlyOfItsRows()
    {
        Transcript transcript;
        for (const char *source : {"一。", "二。", "三。", "四。"}) {
            transcript.say(source, source);
        }
        QSignalSpy changes(&transcript.model, &QAbstractItemModel::dataChanged);
        transcript.model.beginSelection(1, false, 0);
        QCOMPARE(changes.size(), 0);
        transcript.model.extendSelection(2, 1);
        QCOMPARE(changes.size(), 1);
        QCOMPARE(changes[0][0].toModelIndex().row(), 1);
        QCOMPARE(changes[0][1].toModelIndex().row(), 2);
        transcript.model.clearSelection();
        QCOMPARE(changes.size(), 2);
        QCOMPARE(changes[1][1].toModelIndex().row(), 2);
    }
};

LUMAPHONE_OFFSCREEN_TEST(TranscriptModelTest)

} // namespace transcriptmodeltest

#include "TranscriptModelTest.moc"
