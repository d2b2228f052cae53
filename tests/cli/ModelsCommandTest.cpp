#include "cli/ModelsCommand.h"

#include "cli/CollectedStreams.h"
#include "models/ModelError.h"
#include "models/ModelInstaller.h"
#include "models/ModelStore.h"
#include "support/BundledModel.h"
#include "support/Coroutines.h"
#include "support/FileServer.h"
#include "support/FolderResources.h"
#include "support/ModelFixtures.h"
#include "support/program/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QObject>
#include <QTemporaryDir>
#include <QTest>

namespace modelscommandtest {

using namespace lumaphone;
using namespace lumaphone::cli;

namespace {

const QByteArray weights = test::noise(100'000, 3);

QByteArray listing(const QString &server)
{
    const QString model
        = QStringLiteral(R"({"id": "%1", "kind": "translation", "title": "%1!", "languages": [%2],
        "licence": {"text": "terms of %1", "mustBeAccepted": %3},
        "downloads": [{"url": "%4/%1.bin", "compression": "none",
            "files": [{"role": "model", "name": "%1.bin", "size": 100000,
                "sha256": "%5"}]}]})");
    const QString hash = test::sha256Of(weights);
    const QStringList models {model.arg("ja-en", R"("ja", "en")", "false", server, hash),
        model.arg("en-zh-Hant", R"("en", "zh-Hant")", "false", server, hash),
        model.arg("own-terms", R"("xx", "yy")", "true", server, hash)};
    const QByteArray own = ("{\"models\": [" + models.join(QLatin1Char(',')) + "]}").toUtf8();
    QList<ModelEntry> entries = ModelCatalogue::fromJson(own, "own").entries();
    entries.append(test::bundledModel());
    return test::listingOf(entries);
}

} // namespace

class ModelsCommandTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_scratch = std::make_unique<QTemporaryDir>();
        m_server = std::make_unique<test::FileServer>();
        for (const char *name : {"ja-en", "en-zh-Hant", "own-terms"}) {
            m_server->put(QStringLiteral("/%1.bin").arg(name), weights);
        }
        m_store = std::make_unique<ModelStore>(m_scratch->filePath("Models"),
            ModelCatalogue::fromJson(listing(m_server->url({})), "test"),
            std::make_shared<test::FolderResources>(program()));
        m_installer = std::make_unique<ModelInstaller>(*m_store, m_mainQueue);
        m_printed = std::make_unique<test::CollectedStreams>();
    }

    void theCommandLineIsRead()
    {
        QVERIFY(std::holds_alternative<ModelsList>(parseCommandLine({"models", "list"})));
        const CommandLine install = parseCommandLine(
            {"models", "install", "ja-zh-Hant", "ja-en", "--from", "/folder", "--accept-licence"});
        const ModelsInstall expected {{"ja-zh-Hant", "ja-en"}, "/folder", true};
        QVERIFY(std::get<ModelsInstall>(install) == expected);
        QCOMPARE(std::get<ModelsRemove>(parseCommandLine({"models", "remove", "ja-en"})).names,
            QStringList {"ja-en"});
        QCOMPARE(std::get<ModelsVerify>(parseCommandLine({"models", "verify"})).names, QStringList());
        QCOMPARE(std::get<ModelsLicence>(parseCommandLine({"models", "licence", "a", "b"})).names,
            (QStringList {"a", "b"}));
        QVERIFY(std::get<ShowText>(parseCommandLine({"models", "--help"})).text.contains("models install"));
    }

    void wrongUsageIsRefused_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("no verb") << QStringList {"models"};
        QTest::newRow("unknown verb") << QStringList {"models", "get", "ja-en"};
        QTest::newRow("nothing to install") << QStringList {"models", "install"};
        QTest::newRow("nothing to remove") << QStringList {"models", "remove"};
        QTest::newRow("no licence named") << QStringList {"models", "licence"};
        QTest::newRow("list takes no name") << QStringList {"models", "list", "ja-en"};
        QTest::newRow("empty name") << QStringList {"models", "install", ""};
        QTest::newRow("empty folder") << QStringList {"models", "install", "ja-en", "--from", ""};
        QTest::newRow("a folder for another verb") << QStringList {"models", "verify", "--from", "x"};
    }
    void wrongUsageIsRefused()
    {
        QFETCH(QStringList, arguments);
        QVERIFY(test::thrownBy<UsageError>([&] { parseCommandLine(arguments); }));
    }

    void theListTellsEachState()
    {
        QCOMPARE(install({"en-zh-Hant"}), exitSuccess);
        QVERIFY(QDir().mkpath(m_store->partialFolder(m_store->catalogue().entry("ja-en"))));
        QCOMPARE(runModelsList(*m_store, m_printed->streams), exitSuccess);
        QCOMPARE(m_printed->output,
            QByteArray("en-zh-Hant 安裝完成。\n"
                       "ja-en\tpartial\t100 kB\tja-en!\nen-zh-Hant\tinstalled\t100 kB\ten-zh-Hant!\n"
                       "own-terms\tmissing\t100 kB\town-terms!\n"
                       "english-speech\tmissing\t10 kB\t英文的語音辨識\n"));
    }

    void aSizeThatNobodyKnowsIsNotSaid()
    {
        QList<ModelEntry> entries = m_store->catalogue().entries();
        for (ModelEntry &entry : entries) {
            for (ModelDownload &download : entry.downloads) {
                download.files[0].size.reset();
            }
        }
        const ModelStore store(
            m_store->folder(), ModelCatalogue::fromJson(test::listingOf(entries), "without sizes"));
        QCOMPARE(runModelsList(store, m_printed->streams), exitSuccess);
        QVERIFY(m_printed->output.startsWith("ja-en\tmissing\t-\tja-en!\n"));
    }

    void whatComesWithTheProgramIsListedAndChecked()
    {
        test::shipBundledModel(program());
        QCOMPARE(runModelsList(*m_store, m_printed->streams), exitSuccess);
        QVERIFY(m_printed->output.endsWith("english-speech\tbundled\t10 kB\t英文的語音辨識\n"));
        QCOMPARE(runModelsVerify({}, *m_store, m_printed->streams), exitSuccess);
        QVERIFY(m_printed->output.endsWith("\nenglish-speech 完好。\n"));
        QCOMPARE(runModelsVerify({{"english-speech"}}, *m_store, m_printed->streams), exitSuccess);
        QVERIFY(m_printed->output.endsWith("english-speech 完好。\nenglish-speech 完好。\n"));
        QCOMPARE(m_printed->messages, QByteArray());

        QVERIFY(QFile::resize(program() + "/english-speech/tokens.txt", 2));
        QCOMPARE(runModelsVerify({}, *m_store, m_printed->streams), exitFailure);
        QVERIFY(m_printed->messages.contains("tokens.txt 已損壞（大小不對）"));
        m_printed->output.clear();
        QCOMPARE(runModelsList(*m_store, m_printed->streams), exitSuccess);
        QVERIFY(m_printed->output.contains("english-speech\tdamaged\t"));
    }

    void whatComesWithTheProgramStays()
    {
        test::shipBundledModel(program());
        const QString partOfProgram
            = QStringLiteral("「英文的語音辨識」是 Lumaphone 的一部分，不需要安裝，也不能移除。");
        const auto removing = test::thrownBy<ModelError>(
            [this] { runModelsRemove({{"english-speech"}}, *m_store, m_printed->streams); });
        QVERIFY(removing);
        QCOMPARE(removing->errorDescription(), partOfProgram);
        const auto installing = test::thrownBy<ModelError>([this] { install({"ja-en", "english-speech"}); });
        QVERIFY(installing);
        QCOMPARE(installing->errorDescription(), partOfProgram);
        QVERIFY(m_server->requests().isEmpty());
        QCOMPARE(m_printed->output, QByteArray());
    }

    void aProgramShippedWithoutItSaysSo()
    {
        QCOMPARE(runModelsVerify({}, *m_store, m_printed->streams), exitSuccess);
        QCOMPARE(m_printed->output, QByteArray());
        QCOMPARE(runModelsVerify({{"english-speech"}}, *m_store, m_printed->streams), exitFailure);
        QVERIFY(m_printed->messages.contains("packaging/install-speech-runtime"));
        const auto installing = test::thrownBy<ModelError>([this] { install({"english-speech"}); });
        QVERIFY(installing);
        QCOMPARE(installing->errorCase(), ModelError::Case::notShipped);
    }

    void licencesAreRead()
    {
        test::shipBundledModel(program());
        QCOMPARE(runModelsLicence({{"english-speech"}}, *m_store, m_printed->streams), exitSuccess);
        QVERIFY2(m_printed->output.startsWith(
                     "english-speech：英文的語音辨識\nMIT 授權。\n\nThe files of this folder"),
            m_printed->output);
        QVERIFY(m_printed->output.endsWith("\nSOFTWARE.\n"));
        m_printed->output.clear();
        QCOMPARE(runModelsLicence({{"ja-zh-Hant", "ja-en"}}, *m_store, m_printed->streams), exitSuccess);
        QCOMPARE(m_printed->output,
            QByteArray("ja-en：ja-en!\nterms of ja-en\n\nen-zh-Hant：en-zh-Hant!\nterms of en-zh-Hant\n"));
        QVERIFY(test::thrownBy<ModelError>(
            [this] { runModelsLicence({{"nobody"}}, *m_store, m_printed->streams); }));
    }

    void aLicenceCannotSteerTheTerminal()
    {
        test::shipBundledModel(program());
        QFile file(program() + "/english-speech/LICENSE");
        const qint64 size = file.size();
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.write(QByteArray("\x1b[2Jterms").leftJustified(size, '.')) == size);
        file.close();
        QCOMPARE(runModelsLicence({{"english-speech"}}, *m_store, m_printed->streams), exitSuccess);
        QVERIFY(m_printed->output.contains("terms"));
        QVERIFY(!m_printed->output.contains('\x1b'));
    }

    void aPairInstallsItsLegs()
    {
        QCOMPARE(install({"ja-zh-Hant"}), exitSuccess);
        QCOMPARE(m_printed->output, QByteArray("ja-en 安裝完成。\nen-zh-Hant 安裝完成。\n"));
        QVERIFY(m_printed->messages.contains("ja-en：terms of ja-en\n"));
        QVERIFY(m_printed->messages.contains("ja-en：下載中"));
        QCOMPARE(install({"ja-en", "ja-zh-Hant"}), exitSuccess);
        QVERIFY(m_printed->output.endsWith("ja-en 已經安裝。\nen-zh-Hant 已經安裝。\n"));
    }

    void aTerminalShowsProgressInPlace()
    {
        QCOMPARE(install({"ja-en"}, 80), exitSuccess);
        QVERIFY(m_printed->messages.contains("\r\033[Kja-en：下載中"));
        QVERIFY(m_printed->messages.contains("檢查並解開 100%"));
        QVERIFY(m_printed->messages.endsWith('\n'));
    }

    void aLicenceIsShownAndAskedFor()
    {
        QCOMPARE(install({"own-terms"}), exitFailure);
        QVERIFY(m_printed->messages.contains("terms of own-terms"));
        QVERIFY(m_printed->messages.contains("--accept-licence"));
        QVERIFY(m_server->requests().isEmpty());
        QCOMPARE(install({{"own-terms"}, {}, true}), exitSuccess);
    }

    void anUnknownPairIsNamed()
    {
        const auto error = test::thrownBy<ModelError>([this] { install({"xx-zh-Hant"}); });
        QVERIFY(error);
        QCOMPARE(error->errorDescription(), QStringLiteral("沒有名為「xx-zh-Hant」的模型。"));
    }

    void aFolderServesAsWell()
    {
        QFile file(m_scratch->filePath("ja-en.bin"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(weights);
        file.close();
        QCOMPARE(install({{"ja-en"}, m_scratch->path(), false}), exitSuccess);
        QVERIFY(m_server->requests().isEmpty());
    }

    void itEndsWhenItIsStopped()
    {
        m_server->muteAfter = 1000;
        std::stop_source stop;
        const QCoro::Task<ExitStatus> running = runModelsInstall(
            {{"ja-en"}, {}, false}, *m_store, *m_installer, m_printed->streams, {}, stop.get_token());
        QVERIFY(test::waitUntil(
            [this] { return !m_printed->messages.isEmpty() && m_server->requests().size() == 1; }));
        QVERIFY(!running.isReady());
        stop.request_stop();
        QVERIFY(test::waitUntil([&running] { return running.isReady(); }));
        QCOMPARE(m_store->state(m_store->catalogue().entry("ja-en")), ModelState::partial);
    }

    void aRemovedPairLeavesTheLegThatOthersUse()
    {
        QCOMPARE(install({"ja-zh-Hant"}), exitSuccess);
        QCOMPARE(runModelsRemove({{"ja-zh-Hant"}}, *m_store, m_printed->streams), exitSuccess);
        QCOMPARE(m_store->state(m_store->catalogue().entry("ja-en")), ModelState::missing);
        QCOMPARE(m_store->state(m_store->catalogue().entry("en-zh-Hant")), ModelState::installed);
        QCOMPARE(runModelsRemove({{"ja-en"}}, *m_store, m_printed->streams), exitSuccess);
        QVERIFY(m_printed->output.endsWith("ja-en 已移除。\nja-en 沒有安裝。\n"));
    }

    void aCheckFindsDamage()
    {
        QCOMPARE(install({"ja-zh-Hant"}), exitSuccess);
        QCOMPARE(runModelsVerify({}, *m_store, m_printed->streams), exitSuccess);
        QVERIFY(m_printed->output.endsWith("ja-en 完好。\nen-zh-Hant 完好。\n"));
        QFile file(m_store->folder() + "/ja-en/ja-en.bin");
        QVERIFY(file.open(QIODevice::ReadWrite));
        file.write("another");
        file.close();
        QCOMPARE(runModelsVerify({}, *m_store, m_printed->streams), exitFailure);
        QVERIFY(m_printed->messages.contains("SHA-256 不符"));
        QCOMPARE(runModelsVerify({{"en-zh-Hant"}}, *m_store, m_printed->streams), exitSuccess);
        QCOMPARE(runModelsVerify({{"own-terms"}}, *m_store, m_printed->streams), exitFailure);
    }

private:
    QString program() const { return m_scratch->filePath("program"); }
    ExitStatus install(const ModelsInstall &command, std::optional<int> columns = {})
    {
        return test::waitFor(
            runModelsInstall(command, *m_store, *m_installer, m_printed->streams, columns, {}));
    }
    ExitStatus install(const QStringList &names, std::optional<int> columns = {})
    {
        return install(ModelsInstall {names, {}, false}, columns);
    }

    std::shared_ptr<MainQueue> m_mainQueue = MainQueue::create();
    std::unique_ptr<QTemporaryDir> m_scratch;
    std::unique_ptr<test::FileServer> m_server;
    std::unique_ptr<ModelStore> m_store;
    std::unique_ptr<ModelInstaller> m_installer;
    std::unique_ptr<test::CollectedStreams> m_printed;
};

LUMAPHONE_TEST(ModelsCommandTest)

} // namespace modelscommandtest

#include "ModelsCommandTest.moc"
