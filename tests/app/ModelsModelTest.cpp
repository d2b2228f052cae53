#include "app/models/ModelsModel.h"

#include "app/OffscreenTest.h"
#include "storage/SettingKeys.h"
#include "support/BundledModel.h"
#include "support/Coroutines.h"
#include "support/FileServer.h"
#include "support/FolderResources.h"
#include "support/MemoryDefaultsStore.h"
#include "support/ModelFixtures.h"

#include <QAbstractItemModelTester>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QObject>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace modelsmodeltest {

using namespace lumaphone;

namespace {

const QByteArray weights = test::noise(100'000, 3);

QByteArray listing(const QString &server)
{
    const QString model = QStringLiteral(R"({"id": "%1", "kind": "%2", "title": "%1!", "languages": [%3],
        "licence": {"text": "terms of %1", "mustBeAccepted": %4},
        "downloads": [{"url": "%5/%1.bin", "compression": "none",
            "files": [{"role": "%6", "name": "%1.bin", "sha256": "%7"}]}]})");
    const QStringList models {model.arg("en-zh-Hant", "translation", R"("en", "zh-Hant")", "false", server),
        model.arg("ja-en", "translation", R"("ja", "en")", "false", server),
        model.arg("ko-en", "translation", R"("ko", "en")", "false", server),
        model.arg("listener", "speech", R"("ja", "ko")", "false", server).arg("vad"),
        model.arg("speech", "speech", R"("ja")", "true", server)};
    const QString all
        = models.join(QLatin1Char(',')).replace("%6", "model").replace("%7", test::sha256Of(weights));
    QList<ModelEntry> entries
        = ModelCatalogue::fromJson(("{\"models\": [" + all + "]}").toUtf8(), "installable").entries();
    entries.append(test::bundledModel());
    return test::listingOf(entries);
}

enum Rows { english, japanese, korean, speech, bundled };

} // namespace

class ModelsModelTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_scratch = std::make_unique<QTemporaryDir>();
        m_server = std::make_unique<test::FileServer>();
        for (const char *name : {"en-zh-Hant", "ja-en", "ko-en", "listener", "speech"}) {
            m_server->put(QStringLiteral("/%1.bin").arg(name), weights);
        }
        m_store = std::make_unique<ModelStore>(m_scratch->filePath("Models"),
            ModelCatalogue::fromJson(listing(m_server->url({})), "test"),
            std::make_shared<test::FolderResources>(m_scratch->filePath("program")));
        m_defaults = std::make_unique<test::MemoryDefaultsStore>();
        start();
    }
    void start()
    {
        m_model = std::make_unique<ModelsModel>(
            *m_store, m_mainQueue, InstallationMemory(m_defaults.get()), [this] { return m_time; });
        m_tester = std::make_unique<QAbstractItemModelTester>(
            m_model.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    }
    void cleanup()
    {
        m_tester.reset();
        m_model.reset();
    }

    void thereIsARowForEachThingAUserMayWant()
    {
        QCOMPARE(m_model->rowCount(), 5);
        QCOMPARE(text(english, ModelsModel::TitleRole), QStringLiteral("英文翻譯成繁體中文"));
        QCOMPARE(text(japanese, ModelsModel::TitleRole), QStringLiteral("日文翻譯成繁體中文"));
        QCOMPARE(text(korean, ModelsModel::TitleRole), QStringLiteral("韓文翻譯成繁體中文"));
        QCOMPARE(text(speech, ModelsModel::TitleRole), QStringLiteral("speech!"));
        for (int row = english; row <= speech; ++row) {
            QVERIFY(flag(row, ModelsModel::IsInstallableRole));
            QVERIFY(!flag(row, ModelsModel::HasLicenceRole));
            QVERIFY(!flag(row, ModelsModel::IsReadyRole));
            QCOMPARE(text(row, ModelsModel::StatusTextRole), QStringLiteral("尚未安裝"));
            QCOMPARE(text(row, ModelsModel::InstallTitleRole), QStringLiteral("安裝"));
        }
        QVERIFY(m_server->requests().isEmpty());
    }

    void anInstallationBringsAllModelsOfItsRow()
    {
        QSignalSpy changes(m_model.get(), &ModelsModel::isInstallingChanged);
        m_model->install(japanese);
        QVERIFY(flag(japanese, ModelsModel::IsInstallingRole));
        QVERIFY(m_model->isInstalling());
        QVERIFY(ends());
        QCOMPARE(changes.size(), 2);
        QVERIFY(flag(japanese, ModelsModel::IsReadyRole));
        QVERIFY(flag(english, ModelsModel::IsReadyRole)); // it was on the way
        QVERIFY(!flag(korean, ModelsModel::IsReadyRole));
        QCOMPARE(text(japanese, ModelsModel::StatusTextRole), QStringLiteral("已安裝，可離線使用"));
    }

    void progressIsShown()
    {
        m_server->muteAfter = 50'000;
        m_model->install(english);
        QVERIFY(test::waitUntil([this] { return number(english, ModelsModel::ProgressRole) < 0; }));
        QVERIFY(test::waitUntil([this] {
            return text(english, ModelsModel::StatusTextRole).startsWith(QStringLiteral("下載中... 5"));
        }));
        m_model->cancel(english);
        QVERIFY(ends());
        QCOMPARE(text(english, ModelsModel::StatusTextRole), QStringLiteral("已暫停，按「繼續」接著下載"));
        QCOMPARE(text(english, ModelsModel::InstallTitleRole), QStringLiteral("繼續"));
        QVERIFY(!flag(english, ModelsModel::IsErrorRole));
    }

    void progressHasAPace()
    {
        m_server->cutAfter = 30'000;
        m_server->cuts = 2;
        QStringList seen;
        connect(m_model.get(), &QAbstractItemModel::dataChanged, this, [this, &seen] {
            m_time += std::chrono::seconds(2);
            seen.append(text(english, ModelsModel::StatusTextRole));
        });
        m_model->install(english);
        QVERIFY(ends());
        disconnect(m_model.get(), nullptr, this, nullptr);
        QVERIFY(flag(english, ModelsModel::IsReadyRole));
        QVERIFY2(!seen.filter(QStringLiteral("，每秒 ")).isEmpty(), qPrintable(seen.join('\n')));
        QVERIFY(!text(english, ModelsModel::StatusTextRole).contains(QStringLiteral("每秒")));
    }

    void whatWasUnderWayAtTheEndGoesOnAtTheNextStart()
    {
        m_server->muteAfter = 50'000;
        m_model->install(speech, true);
        m_model->install(korean);
        QVERIFY(test::waitUntil([this] {
            return text(speech, ModelsModel::StatusTextRole).startsWith(QStringLiteral("下載中... 5"));
        }));
        endTheProgram();
        m_server->muteAfter.reset();
        start();
        QVERIFY(!m_model->isInstalling()); // until the window is there
        m_model->resumeInstallations();
        QVERIFY(flag(speech, ModelsModel::IsInstallingRole));
        QVERIFY(flag(korean, ModelsModel::IsInstallingRole));
        QVERIFY(ends());
        QVERIFY(flag(speech, ModelsModel::IsReadyRole)); // the licence has been accepted before
        QVERIFY(flag(korean, ModelsModel::IsReadyRole));
        QCOMPARE(wasContinuedAt("/speech.bin"), QByteArray("bytes=50000-"));
        endTheProgram();
        start();
        m_model->resumeInstallations();
        QVERIFY(!m_model->isInstalling());
    }

    void whatWasPausedStaysPaused()
    {
        m_server->muteAfter = 50'000;
        m_model->install(english);
        QVERIFY(test::waitUntil([this] {
            return text(english, ModelsModel::StatusTextRole).startsWith(QStringLiteral("下載中... 5"));
        }));
        m_model->cancel(english);
        QVERIFY(ends());
        endTheProgram();
        m_server->muteAfter.reset();
        const auto requests = m_server->requests().size();
        start();
        m_model->resumeInstallations();
        test::settle();
        QVERIFY(!m_model->isInstalling());
        QCOMPARE(m_server->requests().size(), requests);
        QCOMPARE(text(english, ModelsModel::StatusTextRole), QStringLiteral("已暫停，按「繼續」接著下載"));
        m_model->install(english);
        QVERIFY(ends());
        QVERIFY(flag(english, ModelsModel::IsReadyRole));
        QCOMPARE(wasContinuedAt("/en-zh-Hant.bin"), QByteArray("bytes=50000-"));
    }

    void whatFailedOrIsUnknownIsNotTriedAgainByItself()
    {
        m_server->status = 503;
        m_model->install(english);
        QVERIFY(ends());
        m_defaults->setObject(settingkeys::installing, QStringLiteral("unheard-of!"));
        endTheProgram();
        m_server->status.reset();
        start();
        m_model->resumeInstallations();
        QVERIFY(!m_model->isInstalling());
        QVERIFY(!m_defaults->object(settingkeys::installing));
    }

    void oneWaitsForTheOther()
    {
        m_model->install(japanese);
        m_model->install(korean);
        m_model->install(korean); // a second click
        QCOMPARE(text(korean, ModelsModel::StatusTextRole), QStringLiteral("等候中..."));
        QVERIFY(ends());
        QVERIFY(flag(japanese, ModelsModel::IsReadyRole));
        QVERIFY(flag(korean, ModelsModel::IsReadyRole));
        QCOMPARE(m_server->requestsFor("/en-zh-Hant.bin").size(), 1);
    }

    void oneThatWaitsCanBeCancelled()
    {
        m_model->install(japanese);
        m_model->install(korean);
        m_model->cancel(korean);
        QVERIFY(!flag(korean, ModelsModel::IsInstallingRole));
        QVERIFY(ends());
        QVERIFY(flag(japanese, ModelsModel::IsReadyRole));
        QVERIFY(m_server->requestsFor("/ko-en.bin").isEmpty());
    }

    void aFailureIsSaidAndCanBeTriedAgain()
    {
        m_server->status = 503;
        m_model->install(english);
        QVERIFY(ends());
        QVERIFY(flag(english, ModelsModel::IsErrorRole));
        QCOMPARE(text(english, ModelsModel::StatusTextRole),
            QStringLiteral("無法下載 en-zh-Hant.bin：伺服器回應 HTTP 503。"));
        m_server->status.reset();
        m_model->install(english);
        QVERIFY(!flag(english, ModelsModel::IsErrorRole));
        QVERIFY(ends());
        QVERIFY(flag(english, ModelsModel::IsReadyRole));
    }

    void aLicenceHasToBeAccepted()
    {
        QVERIFY(flag(speech, ModelsModel::MustAcceptLicenceRole));
        QVERIFY(!flag(english, ModelsModel::MustAcceptLicenceRole));
        QCOMPARE(text(speech, ModelsModel::LicenceTextRole),
            QStringLiteral("terms of speech\nlistener!：terms of listener"));
        m_model->install(speech);
        QVERIFY(ends());
        QVERIFY(flag(speech, ModelsModel::IsErrorRole));
        QVERIFY(m_server->requests().isEmpty());
        m_model->install(speech, true);
        QVERIFY(ends());
        QVERIFY(flag(speech, ModelsModel::IsReadyRole));
        QVERIFY(!flag(speech, ModelsModel::MustAcceptLicenceRole));
    }

    void aRowIsFoundByItsLanguage()
    {
        QCOMPARE(m_model->speechRow("ja"), int(speech));
        QCOMPARE(m_model->speechRow("ko"), -1); // what only helps recognizes nothing
        QCOMPARE(m_model->translationRow("ko"), int(korean));
        QCOMPARE(m_model->translationRow("zh"), -1);
    }

    void whatSpeechNeedsComesAndGoesWithIt()
    {
        m_model->install(speech, true);
        QVERIFY(ends());
        QCOMPARE(m_server->requestsFor("/listener.bin").size(), 1);
        QVERIFY(flag(speech, ModelsModel::IsRemovableRole));
        m_model->remove(speech);
        QCOMPARE(m_store->state(m_store->catalogue().entry("listener")), ModelState::missing);
        QCOMPARE(m_store->state(m_store->catalogue().entry("speech")), ModelState::missing);
        QVERIFY(!flag(speech, ModelsModel::IsRemovableRole));
    }

    void theEndOfAnInstallationIsTold()
    {
        QSignalSpy ended(m_model.get(), &ModelsModel::installationEnded);
        m_server->muteAfter = 1000;
        m_model->install(english);
        QVERIFY(test::waitUntil([this] { return m_server->requests().size() == 1; }));
        m_model->cancel(english);
        QVERIFY(ends());
        QCOMPARE(ended.size(), 0); // the user knows
        m_server->muteAfter.reset();
        m_model->install(english);
        QVERIFY(ends());
        QCOMPARE(ended.size(), 1);
        QCOMPARE(ended[0][0].toString(), QStringLiteral("英文翻譯成繁體中文：已安裝，可離線使用"));
    }

    void removingSaysWhatElseStops()
    {
        const QString later = QStringLiteral("之後要用時，需要重新下載。");
        QVERIFY(!flag(english, ModelsModel::IsRemovableRole));
        m_model->install(japanese);
        QVERIFY(ends());
        QCOMPARE(text(japanese, ModelsModel::RemovalTextRole), later);
        QCOMPARE(text(english, ModelsModel::RemovalTextRole),
            QStringLiteral("「日文翻譯成繁體中文」也要用到它，會一起停用。") + later);
    }

    void theSizeIsSaidAsFarAsItIsKnown()
    {
        const ModelStore store(m_scratch->filePath("Other"), ModelCatalogue::builtIn());
        const ModelsModel model(store, m_mainQueue);
        const auto status = [&model](int row) {
            return model.data(model.index(row), ModelsModel::StatusTextRole).toString();
        };
        QCOMPARE(status(model.translationRow("en")), QStringLiteral("尚未安裝，安裝後約 49 MB"));
        QCOMPARE(status(model.speechRow("zh")), QStringLiteral("尚未安裝，下載約 164 MB"));
    }

    void whatComesWithTheProgramIsThere()
    {
        test::shipBundledModel(m_scratch->filePath("program"));
        QCOMPARE(text(bundled, ModelsModel::TitleRole), QStringLiteral("英文的語音辨識"));
        QCOMPARE(text(bundled, ModelsModel::StatusTextRole), QStringLiteral("Lumaphone 內建，可離線使用"));
        QVERIFY(flag(bundled, ModelsModel::IsReadyRole));
        QVERIFY(!flag(bundled, ModelsModel::IsInstallableRole));
        QVERIFY(!flag(bundled, ModelsModel::IsRemovableRole));
        QVERIFY(flag(bundled, ModelsModel::HasLicenceRole));
        const QString licence = m_model->licence(bundled);
        QVERIFY2(licence.startsWith("MIT 授權。\n\nThe files of this folder"), qPrintable(licence));
        m_model->remove(bundled);
        QVERIFY(flag(bundled, ModelsModel::IsReadyRole));
        QVERIFY(!flag(bundled, ModelsModel::IsErrorRole));
        QCOMPARE(m_model->speechRow("en"), -1); // nobody can install it
    }

    void aProgramShippedWithoutItSaysSo()
    {
        QCOMPARE(text(bundled, ModelsModel::StatusTextRole),
            QStringLiteral("這個版本沒有附上。請執行 packaging/install-speech-runtime 後重新建置，"
                           "或改裝完整的套件。"));
        QVERIFY(!flag(bundled, ModelsModel::IsReadyRole));
        QVERIFY(!flag(bundled, ModelsModel::IsInstallableRole));
        QVERIFY(!flag(bundled, ModelsModel::HasLicenceRole));
        m_model->install(bundled);
        QVERIFY(!m_model->isInstalling());
        QVERIFY(!flag(bundled, ModelsModel::IsErrorRole));
    }

    void aDamagedProgramSaysSo()
    {
        test::shipBundledModel(m_scratch->filePath("program"));
        QVERIFY(QFile::resize(m_scratch->filePath("program/english-speech/encoder.onnx"), 1));
        QVERIFY(text(bundled, ModelsModel::StatusTextRole).startsWith("檔案已損壞。請重新安裝 Lumaphone"));
        QVERIFY(!flag(bundled, ModelsModel::IsReadyRole));
        QVERIFY(!flag(bundled, ModelsModel::IsInstallableRole));
        QVERIFY(!flag(bundled, ModelsModel::IsRemovableRole));
    }

    void theProgramsVoiceDetectorSparesAnother()
    {
        test::shipBundledModel(m_scratch->filePath("program"));
        QCOMPARE(text(speech, ModelsModel::LicenceTextRole), QStringLiteral("terms of speech"));
        m_model->install(speech, true);
        QVERIFY(ends());
        QVERIFY(flag(speech, ModelsModel::IsReadyRole));
        QVERIFY(m_server->requestsFor("/listener.bin").isEmpty());
        QVERIFY(QDir(m_scratch->filePath("program")).removeRecursively());
        QVERIFY(!flag(speech, ModelsModel::IsReadyRole));
        m_model->install(speech, true);
        QVERIFY(ends());
        QVERIFY(flag(speech, ModelsModel::IsReadyRole));
        QCOMPARE(m_server->requestsFor("/listener.bin").size(), 1);
        QCOMPARE(m_model->licence(speech),
            QStringLiteral("speech!\n\nterms of speech\n\nlistener!\n\nterms of listener"));
    }

    void aRemovedRowLeavesWhatOthersUse()
    {
        m_model->install(japanese);
        QVERIFY(ends());
        m_model->remove(japanese);
        QVERIFY(!flag(japanese, ModelsModel::IsReadyRole));
        QVERIFY(flag(english, ModelsModel::IsReadyRole));
    }

    void damageIsSeenWhenTheDiskIsLookedAtAgain()
    {
        m_model->install(english);
        QVERIFY(ends());
        QVERIFY(QFile::remove(m_store->folder() + "/en-zh-Hant/en-zh-Hant.bin"));
        QSignalSpy changes(m_model.get(), &QAbstractItemModel::dataChanged);
        m_model->refresh();
        QCOMPARE(changes.size(), 1);
        QCOMPARE(text(english, ModelsModel::StatusTextRole), QStringLiteral("檔案已損壞"));
        QCOMPARE(text(english, ModelsModel::InstallTitleRole), QStringLiteral("修復"));
        QCOMPARE(text(korean, ModelsModel::StatusTextRole), QStringLiteral("檔案已損壞"));
    }

    void itMayGoAwayDuringAnInstallation()
    {
        m_server->muteAfter = 1000;
        m_model->install(japanese);
        QVERIFY(test::waitUntil([this] { return m_server->requests().size() == 1; }));
        cleanup();
        test::settle();
        QCOMPARE(m_store->state(m_store->catalogue().entry("ja-en")), ModelState::partial);
    }

private:
    void endTheProgram()
    {
        cleanup();
        test::settle();
    }
    /// From where the last request for a file asked for it.
    QByteArray wasContinuedAt(const QString &path) const
    {
        return m_server->requestsFor(path).constLast().header("Range");
    }
    QVariant value(int row, int role) const { return m_model->data(m_model->index(row), role); }
    QString text(int row, int role) const { return value(row, role).toString(); }
    bool flag(int row, int role) const { return value(row, role).toBool(); }
    double number(int row, int role) const { return value(row, role).toDouble(); }
    bool ends() const
    {
        return test::waitUntil([this] { return !m_model->isInstalling(); }, 30000);
    }

    std::shared_ptr<MainQueue> m_mainQueue = MainQueue::create();
    std::unique_ptr<QTemporaryDir> m_scratch;
    std::unique_ptr<test::FileServer> m_server;
    std::unique_ptr<ModelStore> m_store;
    std::unique_ptr<test::MemoryDefaultsStore> m_defaults;
    std::chrono::nanoseconds m_time {0};
    std::unique_ptr<ModelsModel> m_model;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

// The tester of models constructs pictures.
LUMAPHONE_OFFSCREEN_TEST(ModelsModelTest)

} // namespace modelsmodeltest

#include "ModelsModelTest.moc"
