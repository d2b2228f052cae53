#include "support/speech-scores/SpokenRecordings.h"

#include "support/WavFile.h"
#include "support/program/TestProgram.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <stdexcept>

namespace spokenrecordingstest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

QString writeList(const QTemporaryDir &folder, const QByteArray &content)
{
    const QString path = folder.filePath("speech.tsv");
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() ? path : QString();
}

} // namespace

class SpokenRecordingsTest : public QObject
{
    Q_OBJECT

private slots:
    void debiansRecordingsAreThere()
    {
        const QTemporaryDir folder;
        const SpokenRecordings all = debianRecordings(folder.path());
        QCOMPARE(all.sets(), (QStringList {"librivox", "cards", "commands"}));
        QCOMPARE(all.language, AppleSystemSpeechLanguage::english);
        QCOMPARE(all.recordings.size(), std::size_t(13));
        QCOMPARE(all.recordings[6].transcript, "four queen of clubs");
        QCOMPARE(qRound(all.seconds()), 43);
        for (const SpokenRecording &recording : all.recordings) {
            QVERIFY(!recording.transcript.isEmpty());
            QCOMPARE(samplesOfWav(recording.path), recording.samples);
        }
    }

    void aListNamesItsRecordings()
    {
        const QTemporaryDir folder;
        writeWav(folder.filePath("a.wav"), std::vector<std::int16_t>(16000));
        const SpokenRecordings all
            = listedRecordings(writeList(folder, "ja-JP\ta.wav\t今日は\n\nja-JP\ta.wav\tはい\n"));
        QCOMPARE(all.language, AppleSystemSpeechLanguage::japanese);
        QCOMPARE(all.sets(), QStringList {"speech"});
        QCOMPARE(all.recordings.size(), std::size_t(2));
        QCOMPARE(all.recordings[1].transcript, "はい");
        QCOMPARE(all.seconds(), 2.0);
    }

    void whatAListDoesNotSayIsAnError_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("message");
        QTest::newRow("empty") << QByteArray("\n") << ": no recording";
        QTest::newRow("an unknown locale")
            << QByteArray("en-GB\ta.wav\tyes\n") << ", line 1: unknown locale \"en-GB\"";
        QTest::newRow("no locale") << QByteArray("en-US\ta.wav\tyes\n\ta.wav\tyes\n")
                                   << ", line 2: unknown locale \"\"";
        QTest::newRow("two languages") << QByteArray("en-US\ta.wav\tyes\nja-JP\ta.wav\tはい\n")
                                       << ", line 2: another language than before";
        QTest::newRow("a field too few") << QByteArray("en-US\ta.wav\n") << ", line 1: a line is";
        QTest::newRow("a missing file") << QByteArray("en-US\tb.wav\tyes\n") << "b.wav: ";
    }
    void whatAListDoesNotSayIsAnError()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, message);
        const QTemporaryDir folder;
        writeWav(folder.filePath("a.wav"), std::vector<std::int16_t>(16000));
        QString said;
        try {
            listedRecordings(writeList(folder, content));
        } catch (const std::runtime_error &error) {
            said = QString::fromUtf8(error.what());
        }
        QVERIFY2(said.contains(message), qPrintable(said));
    }
};

LUMAPHONE_TEST(SpokenRecordingsTest)

} // namespace spokenrecordingstest

#include "SpokenRecordingsTest.moc"
