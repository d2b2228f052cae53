#include "cli/JsonLines.h"
#include "support/RunningProgram.h"
#include "support/WavFile.h"
#include "support/program/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cstring>

namespace offlinecaptiontest {

using namespace lumaphone;
using test::RunningProgram;

namespace {

const QString program = QStringLiteral(LUMAPHONE_CLI);
const QString phraseBook = QStringLiteral(LUMAPHONE_PHRASE_BOOK);

/// The network writes capitals and a full stop, PocketSphinx neither.
QString plain(const QString &text)
{
    return text.toLower().remove(QLatin1Char('.'));
}

} // namespace

/// From a human voice to Chinese text without any network: the program, the recogniser and the models of the
/// phrase book, as a user has them.
class OfflineCaptionTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        for (const char *pair : {"en-zh-Hant", "ja-zh-Hant", "ko-zh-Hant"}) {
            const auto installed = run({"models", "install", "--from", phraseBook, pair});
            QVERIFY2(installed->exitCode() == 0, installed->messages());
        }
        const auto list = run({"models", "list"});
        QCOMPARE(list->output().count("\tinstalled\t"), 3);
        QVERIFY(list->output().contains("示範"));
    }

    void whatCannotBeInstalledIsSaid()
    {
        const auto unknown = run({"models", "install", "nobody"});
        QCOMPARE(unknown->exitCode(), 1);
        QCOMPARE(unknown->messages(), QByteArray("沒有名為「nobody」的模型。\n"));
        QCOMPARE(run({"models", "remove", "ko-en"})->exitCode(), 0);
        const auto unreachable = run({"models", "install", "ko-en"});
        QCOMPARE(unreachable->exitCode(), 1);
        QVERIFY2(unreachable->messages().contains("無法下載 model.koen.bin："), unreachable->messages());
        for (const char *verb : {"install", "remove"}) {
            const auto refused = run({"models", verb, "english-speech"});
            QCOMPARE(refused->exitCode(), 1);
            QVERIFY2(refused->messages().contains("Moonshine"), refused->messages());
        }
        QCOMPARE(run({"models", "install", "--from", phraseBook, "ko-en"})->exitCode(), 0);
    }

    void speechBecomesChinese()
    {
        QFile recorded("/usr/share/pocketsphinx/test/data/goforward.raw");
        QVERIFY(recorded.open(QIODevice::ReadOnly));
        const QByteArray bytes = recorded.readAll();
        std::vector<std::int16_t> samples(std::size_t(bytes.size()) / sizeof(std::int16_t));
        std::memcpy(samples.data(), bytes.constData(), samples.size() * sizeof(std::int16_t));
        const QString sound = m_home.filePath("go forward.wav");
        test::writeWav(sound, samples);

        const auto captions
            = run({"caption", sound, "--language", "english", "--translate", "apple", "--format", "jsonl"});
        QCOMPARE(captions->messages(), QByteArray());
        QCOMPARE(captions->exitCode(), 0);
        const auto [source, translation] = test::lastFinalLine(captions->outputLines());
        QCOMPARE(plain(source), QStringLiteral("go forward ten meters"));
        QCOMPARE(translation, QStringLiteral("請往前走十公尺。"));
    }

    void aDamagedModelCostsNoCaption()
    {
        QVERIFY(QFile::resize(m_home.filePath("data/Lumaphone/Models/en-zh-Hant/model.enzh.bin"), 1000));
        const auto verified = run({"models", "verify"});
        QCOMPARE(verified->exitCode(), 1);
        QVERIFY(verified->messages().contains("en-zh-Hant"));
        const auto captions = run(
            {"caption", m_home.filePath("go forward.wav"), "--language", "english", "--translate", "apple"});
        QCOMPARE(plain(QString::fromUtf8(captions->outputLines().value(0))),
            QStringLiteral("go forward ten meters"));
        QVERIFY2(captions->messages().contains("已損壞"), captions->messages());
    }

private:
    std::unique_ptr<RunningProgram> run(const QStringList &arguments) const
    {
        auto running = std::make_unique<RunningProgram>(QStringLiteral(LUMAPHONE_WITHOUT_NETWORK),
            QStringList {program} + arguments,
            QList<std::pair<QString, QString>> {{"HOME", m_home.path()},
                {"XDG_CONFIG_HOME", m_home.filePath("config")}, {"XDG_DATA_HOME", m_home.filePath("data")},
                {"XDG_RUNTIME_DIR", m_home.path()}, {"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere/bus"},
                {"LUMAPHONE_MODEL_CATALOGUE", phraseBook + "/catalogue.json"}});
        running->waitForEnd();
        return running;
    }

    QTemporaryDir m_home;
};

LUMAPHONE_TEST(OfflineCaptionTest)

} // namespace offlinecaptiontest

#include "OfflineCaptionTest.moc"
