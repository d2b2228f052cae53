#include "speech/hosted/SpeechModelFiles.h"

#include "models/ModelError.h"
#include "speech/framework/LocalSpeechFramework.h"
#include "speech/hosted/SpeechHostFiles.h"
#include "support/Coroutines.h"
#include "support/ToySpeechModel.h"
#include "support/program/TestProgram.h"

#include <QTest>

namespace speechmodelfilestest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

/// Says that everything is there, or nothing.
class Resources final : public BundleResources
{
public:
    explicit Resources(bool isComplete)
        : m_isComplete(isComplete)
    {
    }
    std::optional<QString> path(const QString &name) const override
    {
        return m_isComplete ? std::optional(QStringLiteral("/bin/") + name) : std::nullopt;
    }

private:
    const bool m_isComplete;
};

const std::vector<SpokenLanguage> fourLanguages {
    SpokenLanguage::japanese, SpokenLanguage::english, SpokenLanguage::korean, SpokenLanguage::mandarin};

} // namespace

class SpeechModelFilesTest : public QObject
{
    Q_OBJECT

private slots:
    void whatIsMissingIsNamedWithItsSize_data()
    {
        QTest::addColumn<QStringList>("installed");
        QTest::addColumn<QString>("hint");
        QTest::newRow("nothing there") << QStringList()
                                       << "請在視窗的「離線模型」安裝，或執行「lumaphone-cli models install "
                                          "silero-vad sense-voice」（約 164 MB）。";
        QTest::newRow("no network") << QStringList {"silero-vad"}
                                    << "請在視窗的「離線模型」安裝，或執行「lumaphone-cli models install "
                                       "sense-voice」（約 163 MB）。";
        QTest::newRow("no voice detector")
            << QStringList {"sense-voice"}
            << "請在視窗的「離線模型」安裝，或執行「lumaphone-cli models install silero-vad」（約 644 kB）。";
    }
    void whatIsMissingIsNamedWithItsSize()
    {
        QFETCH(QStringList, installed);
        QFETCH(QString, hint);
        const QTemporaryDir folder;
        const ModelStore store(folder.path(), toySpeechCatalogue());
        CheckedFiles checked(folder.filePath("checked.json"));
        for (const QString &id : installed) {
            installToySpeechModel(store, id);
        }
        QCOMPARE(std::get<QString>(installedSpeechModel(store, checked)), hint);
    }

    void anInstalledModelIsFound()
    {
        const QTemporaryDir folder;
        const ModelStore store(folder.path(), toySpeechCatalogue());
        CheckedFiles checked(folder.filePath("checked.json"));
        installToySpeechModels(store);
        const auto files = std::get<SpeechModelFiles>(installedSpeechModel(store, checked));
        QCOMPARE(files.voiceDetector, folder.filePath("silero-vad/silero_vad.onnx"));
        const host::Network expected {host::NetworkKind::senseVoice,
            {folder.filePath("sense-voice/model.int8.onnx").toStdString()},
            folder.filePath("sense-voice/tokens.txt").toStdString()};
        QCOMPARE(files.network, expected);
    }

    /// Files are compared before the library sees them.
    void aChangedFileIsNotLoaded()
    {
        const QTemporaryDir folder;
        const ModelStore store(folder.path(), toySpeechCatalogue());
        CheckedFiles checked(folder.filePath("checked.json"));
        installToySpeechModels(store);
        const auto files = std::get<SpeechModelFiles>(installedSpeechModel(store, checked));
        files.demandIntact({});
        QFile network(folder.filePath("sense-voice/model.int8.onnx"));
        QVERIFY(network.open(QIODevice::ReadWrite));
        QVERIFY(network.seek(1000) && network.write("x") == 1);
        network.close();
        const auto error = thrownBy<ModelError>([&] { files.demandIntact({}); });
        QVERIFY(error);
        QVERIFY2(
            error->errorDescription().contains("model.int8.onnx"), qPrintable(error->errorDescription()));
        QCOMPARE(files.repair, QStringLiteral("請移除後重新安裝。"));
    }

    void theBundledNetworkIsFound()
    {
        const QTemporaryDir folder;
        const ModelStore none(folder.path(), ModelCatalogue::builtIn());
        CheckedFiles checked(folder.filePath("checked.json"));
        QVERIFY(std::get<QString>(bundledEnglishModel(none, checked)).contains("install-speech-runtime"));
    }

    void theFrameworkFollowsWhatIsInstalled()
    {
        const QTemporaryDir folder;
        const ModelStore store(folder.path(), toySpeechCatalogue());
        CheckedFiles checked(folder.filePath("checked.json"));
        const auto engine = std::make_shared<HostedSpeechEngine>(QStringLiteral("networks"), fourLanguages,
            SpeechHostFiles(std::make_shared<Resources>(true),
                [&store, &checked] { return installedSpeechModel(store, checked); }));
        LocalSpeechFramework framework({engine}, MainQueue::create());
        const auto error
            = thrownBy<SpeechFrameworkError>([&] { test::waitFor(framework.reserve("zh-Hant-TW")); });
        QCOMPARE(error->errorDescription(),
            QStringLiteral("尚未安裝「中文」（zh-Hant-TW）的語音辨識模型。請在視窗的「離線模型」安裝，"
                           "或執行「lumaphone-cli models install silero-vad sense-voice」（約 164 MB）。"));
        QVERIFY(!framework.isInstalled("zh-Hant-TW"));
        QVERIFY(engine->installedLocales().empty());

        installToySpeechModels(store);
        for (const char *const locale : {"ja-JP", "en-US", "ko-KR", "zh-Hant-TW"}) {
            test::waitFor(framework.reserve(locale));
            QCOMPARE(framework.reservations(locale), 1);
            QVERIFY(framework.isInstalled(locale));
        }
        QCOMPARE(engine->installedLocales().size(), std::size_t(4));
        QVERIFY(!engine->installationHint("ja-JP"));

        store.remove(store.catalogue().entry("sense-voice"));
        QVERIFY(thrownBy<SpeechFrameworkError>([&] { test::waitFor(framework.reserve("ja-JP")); }));
    }

    void aMissingRuntimeIsSaid()
    {
        const QTemporaryDir folder;
        const ModelStore store(folder.path(), toySpeechCatalogue());
        CheckedFiles checked(folder.filePath("checked.json"));
        installToySpeechModels(store);
        const HostedSpeechEngine engine(QStringLiteral("networks"), fourLanguages,
            SpeechHostFiles(std::make_shared<Resources>(false),
                [&store, &checked] { return installedSpeechModel(store, checked); }));
        QVERIFY(engine.installedLocales().empty());
        QVERIFY(engine.installationHint("ja-JP")->contains("libsherpa-onnx-c-api.so"));
        QVERIFY(!engine.installationHint("fr-FR"));
    }

    void oneRecognizerServesAllLanguages()
    {
        const QTemporaryDir folder;
        const ModelStore store(folder.path(), toySpeechCatalogue());
        CheckedFiles checked(folder.filePath("checked.json"));
        installToySpeechModels(store);
        const HostedSpeechEngine engine(QStringLiteral("networks"), fourLanguages,
            SpeechHostFiles(std::make_shared<Resources>(true),
                [&store, &checked] { return installedSpeechModel(store, checked); }));
        const auto recognizers
            = engine.makeRecognizers({"ja-JP", "ko-KR"}, [](const QString &, const SpeechResult &) {});
        QCOMPARE(recognizers.size(), std::size_t(1));
        QCOMPARE(recognizers.front()->localeIdentifiers(), std::vector<QString>({"ja-JP", "ko-KR"}));
    }

    void aModelRemovedInBetweenFailsToLoad()
    {
        const QTemporaryDir folder;
        const ModelStore store(folder.path(), toySpeechCatalogue());
        CheckedFiles checked(folder.filePath("checked.json"));
        const HostedSpeechEngine engine(QStringLiteral("networks"), fourLanguages,
            SpeechHostFiles(std::make_shared<Resources>(true),
                [&store, &checked] { return installedSpeechModel(store, checked); }));
        const auto recognizers
            = engine.makeRecognizers({"ja-JP"}, [](const QString &, const SpeechResult &) {});
        QVERIFY(thrownBy<SpeechFrameworkError>([&] { recognizers.front()->load(); }));
    }
};

LUMAPHONE_TEST(SpeechModelFilesTest)

} // namespace speechmodelfilestest

#include "SpeechModelFilesTest.moc"
