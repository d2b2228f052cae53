#include "cli/DraftCommand.h"

#include "cli/CollectedStreams.h"
#include "session/LumaphoneSessionDraftStore.h"
#include "support/program/TestProgram.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace draftcommandtest {

using namespace lumaphone;
using namespace lumaphone::cli;

namespace {

LumaphoneCaptionLine line(const QString &text, const QString &translation)
{
    LumaphoneCaptionLine result;
    result.id = QUuid::createUuid();
    result.sourceText = text;
    result.sourceLanguage = AppleSystemSpeechLanguage::english;
    result.translatedText = translation;
    result.createdAt = QDateTime::currentDateTimeUtc();
    result.isFinal = true;
    return result;
}

} // namespace

class DraftCommandTest : public QObject
{
    Q_OBJECT

private slots:
    void theLinesAreShownWithTheirTranslations()
    {
        const QTemporaryDir folder;
        LumaphoneSessionDraftStore store(folder.path());
        store.save({.lines = {line("tea", "茶"), line("milk", pendingTranslationPlaceholder.toString())},
            .sourceLanguage = AppleSystemSpeechLanguage::english,
            .detectedLanguage = {},
            .startedAt = {},
            .endedAt = {},
            .updatedAt = QDateTime::currentDateTimeUtc()});
        test::CollectedStreams printed;
        QCOMPARE(runDraftShow(store, printed.streams), exitSuccess);
        QCOMPARE(printed.output, QByteArray("tea\n  茶\nmilk\n"));
        QCOMPARE(runDraftDiscard(store, printed.streams), exitSuccess);
        QVERIFY(!QFile::exists(store.draftPath()));
    }

    void aMissingDraftIsSaid()
    {
        const QTemporaryDir folder;
        LumaphoneSessionDraftStore store(folder.path());
        test::CollectedStreams printed;
        QCOMPARE(runDraftShow(store, printed.streams), exitFailure);
        QCOMPARE(runDraftDiscard(store, printed.streams), exitFailure);
        QCOMPARE(printed.output, QByteArray());
        QVERIFY(!printed.messages.isEmpty());
    }

    void aDraftThatCannotBeReadIsNamed()
    {
        const QTemporaryDir folder;
        LumaphoneSessionDraftStore store(folder.path());
        QFile file(store.draftPath());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("{");
        file.close();
        test::CollectedStreams printed;
        QCOMPARE(runDraftShow(store, printed.streams), exitFailure);
        QVERIFY(printed.messages.contains("live-session.json"));
        QVERIFY(file.exists());
    }
};

LUMAPHONE_TEST(DraftCommandTest)

} // namespace draftcommandtest

#include "DraftCommandTest.moc"
