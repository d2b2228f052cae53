#include "base/AtomicFile.h"
#include "models/CheckedFiles.h"
#include "models/ModelError.h"
#include "models/ModelInstaller.h"
#include "models/ModelManifest.h"
#include "models/ModelStore.h"
#include "support/BundledModel.h"
#include "support/Coroutines.h"
#include "support/FolderResources.h"
#include "support/ModelFixtures.h"
#include "support/program/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QObject>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>

namespace bundledmodelstest {

using namespace lumaphone;

namespace {

const QString notShipped
    = QStringLiteral("這個版本的 Lumaphone 沒有附上「英文的語音辨識」。"
                     "請執行 packaging/install-speech-runtime 後重新建置，或改裝完整的套件。");

/// A model of the user's: what an engine reads, in an archive with a licence that nothing is known of.
ModelEntry archivedModel()
{
    ModelEntry entry;
    entry.id = "speech";
    entry.kind = ModelKind::speech;
    entry.title = "語音";
    entry.languages = QStringList {"ja"};
    entry.licence.text = "先看過。";
    entry.downloads = {
        {QUrl("https://example.org/speech.tar.bz2"), ModelCompression::tarBz2, {}, test::sha256Of("archive"),
            {{"model", "model.onnx", 7, test::sha256Of("weights")},
                {"tokens", "tokens.txt", 5, test::sha256Of("words")}, {"licence", "LICENSE", {}, {}}}}};
    return entry;
}

} // namespace

/// Models that come with the program, and what is asked of any model before an engine reads it.
class BundledModelsTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_scratch = std::make_unique<QTemporaryDir>();
        m_checked = std::make_unique<CheckedFiles>(m_scratch->filePath("cache/checked.json"));
        m_store = std::make_unique<ModelStore>(m_scratch->filePath("Models"),
            ModelCatalogue::fromJson(test::listingOf({test::bundledModel(), archivedModel()}), "test"),
            std::make_shared<test::FolderResources>(m_scratch->filePath("程式 é")));
    }

    void whatIsShippedIsThere()
    {
        ship();
        QCOMPARE(m_store->state(bundled()), ModelState::installed);
        const auto model = m_store->installed(bundled());
        QVERIFY(model);
        QCOMPARE(model->require("encoder"), m_scratch->filePath("程式 é/english-speech/encoder.onnx"));
        m_store->verify(bundled());
        const QString licence = m_store->licenceText(bundled());
        QVERIFY2(licence.startsWith("MIT 授權。\n\nThe files of this folder"), qPrintable(licence));
        QVERIFY2(licence.endsWith("SOFTWARE."), qPrintable(licence));
        QVERIFY(!QDir(m_store->folder()).exists()); // nothing of it is the user's
    }

    void aProgramShippedWithoutItSaysSo()
    {
        QCOMPARE(m_store->state(bundled()), ModelState::missing);
        QVERIFY(!m_store->installed(bundled()));
        QCOMPARE(failure([this] { m_store->verify(bundled()); }), notShipped);
        QCOMPARE(failure([this] { m_store->requireIntact(bundled(), {"encoder"}, *m_checked); }), notShipped);
        QCOMPARE(failure([this] { m_store->remove(bundled()); }), notShipped);
        QCOMPARE(failure([this] { install(); }), notShipped);
        QCOMPARE(m_store->licenceText(bundled()), QString("MIT 授權。"));
        const ModelStore alone(m_scratch->filePath("Models"), m_store->catalogue());
        QCOMPARE(alone.state(bundled()), ModelState::missing);
        QCOMPARE(failure([&] { alone.verify(bundled()); }), notShipped);
    }

    void nobodyInstallsOrRemovesIt()
    {
        ship();
        const QString partOfProgram
            = QStringLiteral("「英文的語音辨識」是 Lumaphone 的一部分，不需要安裝，也不能移除。");
        QCOMPARE(failure([this] { m_store->remove(bundled()); }), partOfProgram);
        QCOMPARE(failure([this] { install(); }), partOfProgram);
        ModelInstaller installer(*m_store, m_mainQueue);
        QCOMPARE(failure([&] {
            test::waitFor(
                installer.installFrom(m_scratch->filePath("程式 é"), bundled().id, LicenceConsent::none));
        }),
            partOfProgram);
        QCOMPARE(m_store->state(bundled()), ModelState::installed);
        m_store->verify(bundled());
    }

    void damageIsNamedWithItsFile_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("bytes"); // null: removed
        QTest::addColumn<QString>("detail");
        QTest::addColumn<ModelState>("state");
        QTest::newRow("gone") << "decoder.onnx" << QByteArray() << "找不到檔案" << ModelState::damaged;
        QTest::newRow("cut") << "voice-detector.onnx" << test::noise(300, 3) << "大小不對"
                             << ModelState::damaged;
        QTest::newRow("other bytes") << "encoder.onnx" << test::noise(3000, 4) << "SHA-256 不符"
                                     << ModelState::installed;
        QTest::newRow("another licence")
            << "LICENSE" << QByteArray("none") << "大小不對" << ModelState::damaged;
    }
    void damageIsNamedWithItsFile()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, bytes);
        QFETCH(QString, detail);
        QFETCH(ModelState, state);
        ship();
        const QString path = m_scratch->filePath("程式 é/english-speech/") + name;
        if (bytes.isNull()) {
            QVERIFY(QFile::remove(path));
        } else {
            replaceFile(path, bytes, Durability::renamed);
        }
        QCOMPARE(m_store->state(bundled()), state);
        const QString text
            = QStringLiteral("Lumaphone 附的檔案 %1 已損壞（%2）。"
                             "請重新安裝 Lumaphone，或再執行一次 packaging/install-speech-runtime。")
                  .arg(path, detail);
        QCOMPARE(failure([this] { m_store->verify(bundled()); }), text);
        const QStringList roles {"encoder", "decoder", "tokens", "vad", "licence"};
        QCOMPARE(failure([&] { m_store->requireIntact(bundled(), roles, *m_checked); }), text);
    }

    void anEngineAsksForWhatItReads()
    {
        ship();
        replaceFile(m_scratch->filePath("程式 é/english-speech/decoder.onnx"), test::noise(5000, 9),
            Durability::renamed);
        const InstalledModel model = m_store->requireIntact(bundled(), {"vad"}, *m_checked);
        QCOMPARE(model.require("vad"), m_scratch->filePath("程式 é/english-speech/voice-detector.onnx"));
        QVERIFY(failure([this] {
            m_store->requireIntact(bundled(), {"vad", "decoder"}, *m_checked);
        }).contains("decoder.onnx"));
    }

    void anInstalledModelIsAskedAsWell()
    {
        installArchived("weights", "words");
        const InstalledModel model = m_store->requireIntact(archived(), {"model", "tokens"}, *m_checked);
        QCOMPARE(model.require("tokens"), m_store->folder() + "/speech/tokens.txt");
        QCOMPARE(m_store->licenceText(archived()), QString("先看過。\n\nterms"));
    }

    void anInstalledModelThatIsDamagedIsNotUsedAgain()
    {
        installArchived("weights", "words");
        replaceFile(m_store->folder() + "/speech/model.onnx", "weighty", Durability::renamed);
        QCOMPARE(m_store->state(archived()), ModelState::installed);
        QCOMPARE(failure([this] { m_store->requireIntact(archived(), {"model"}, *m_checked); }),
            QStringLiteral("%1/speech/model.onnx 的內容不對（SHA-256 不符）。請重新安裝。")
                .arg(m_store->folder()));
        QCOMPARE(m_store->state(archived()), ModelState::damaged);
        // Another of its files is right, but the model is not.
        QVERIFY(!failure([this] { m_store->requireIntact(archived(), {"tokens"}, *m_checked); }).isEmpty());
    }

    void aModelThatIsNotInstalledIsRefused()
    {
        const auto error = test::thrownBy<ModelError>(
            [this] { m_store->requireIntact(archived(), {"model"}, *m_checked); });
        QVERIFY(error);
        QCOMPARE(error->errorCase(), ModelError::Case::fileMissing);
    }

    void stoppingIsNoDamage()
    {
        installArchived("weights", "words");
        std::stop_source stop;
        stop.request_stop();
        const auto error = test::thrownBy<ModelError>(
            [&] { m_store->requireIntact(archived(), {"model"}, *m_checked, stop.get_token()); });
        QVERIFY(error);
        QCOMPARE(error->errorCase(), ModelError::Case::cancelled);
        QCOMPARE(m_store->state(archived()), ModelState::installed);
    }

private:
    const ModelEntry &bundled() const { return m_store->catalogue().entry("english-speech"); }
    const ModelEntry &archived() const { return m_store->catalogue().entry("speech"); }
    void ship() const { test::shipBundledModel(m_scratch->filePath("程式 é")); }
    void install()
    {
        ModelInstaller installer(*m_store, m_mainQueue);
        test::waitFor(installer.install(bundled().id, LicenceConsent::accepted));
    }
    void installArchived(const QByteArray &model, const QByteArray &tokens) const
    {
        const QString folder = m_store->modelFolder(archived());
        createFolder(folder);
        ModelManifest manifest;
        manifest.installedAt = QDateTime(QDate(2026, 1, 31), QTime(8, 5), QTimeZone::utc());
        const auto put = [&](const QString &name, const QByteArray &bytes) {
            replaceFile(folder + '/' + name, bytes, Durability::renamed);
            manifest.files.append({name, bytes.size(), test::sha256Of(bytes)});
        };
        put("model.onnx", model);
        put("tokens.txt", tokens);
        put("LICENSE", "terms\n");
        manifest.write(folder);
    }
    /// The text of the error; empty if there is none.
    template<typename Action> static QString failure(Action action)
    {
        const auto error = test::thrownBy<ModelError>(action);
        return error ? error->errorDescription() : QString();
    }

    std::shared_ptr<MainQueue> m_mainQueue = MainQueue::create();
    std::unique_ptr<QTemporaryDir> m_scratch;
    std::unique_ptr<CheckedFiles> m_checked;
    std::unique_ptr<ModelStore> m_store;
};

LUMAPHONE_TEST(BundledModelsTest)

} // namespace bundledmodelstest

#include "BundledModelsTest.moc"
