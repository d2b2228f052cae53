#include "models/ModelGroup.h"

#include "models/ModelManifest.h"
#include "models/SpeechModels.h"
#include "support/BundledModel.h"
#include "support/FolderResources.h"
#include "support/ModelFixtures.h"
#include "support/program/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QObject>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>

namespace modelgrouptest {

using namespace lumaphone;

namespace {

/// A model of one file that holds "bytes", which nobody publishes.
ModelEntry installable(const QString &id, ModelKind kind, const QStringList &languages, const QString &role)
{
    ModelEntry entry;
    entry.id = id;
    entry.kind = kind;
    entry.title = id + '!';
    entry.languages = languages;
    entry.downloads = {{QUrl("https://example.org/" + id), ModelCompression::none, {}, {},
        {{role, id + ".bin", 5, test::sha256Of("bytes")}}}};
    return entry;
}

ModelCatalogue catalogue()
{
    const QStringList four {"ja", "en", "ko", "zh"};
    using enum ModelKind;
    return ModelCatalogue::fromJson(test::listingOf({installable("ja-en", translation, {"ja", "en"}, "model"),
                                        installable("listener", speech, four, "vad"), test::bundledModel(),
                                        installable("four", speech, four, "model"),
                                        installable("en-zh-Hant", translation, {"en", "zh-Hant"}, "model")}),
        "test");
}

QStringList ids(const QList<const ModelEntry *> &entries)
{
    QStringList ids;
    for (const ModelEntry *entry : entries) {
        ids.append(entry->id);
    }
    return ids;
}

} // namespace

class ModelGroupTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_scratch = std::make_unique<QTemporaryDir>();
        m_store = std::make_unique<ModelStore>(m_scratch->filePath("Models"), catalogue(),
            std::make_shared<test::FolderResources>(m_scratch->filePath("program")));
    }

    void everythingThatAUserMayWantIsAGroup()
    {
        const QList<ModelGroup> groups = modelGroups(m_store->catalogue());
        QCOMPARE(groups.size(), 4);
        QCOMPARE(groups[0].title, QString("日文翻譯成繁體中文"));
        QCOMPARE(ids(groups[0].entries), (QStringList {"ja-en", "en-zh-Hant"}));
        QCOMPARE(groups[1].title, QString("英文的語音辨識"));
        QVERIFY(groups[1].isBundled());
        QCOMPARE(ids(groups[1].entries), QStringList {"english-speech"}); // it has a detector of its own
        QCOMPARE(ids(groups[2].entries), (QStringList {"four", "listener"}));
        QVERIFY(!groups[2].isBundled());
        QCOMPARE(ids(groups[3].entries), QStringList {"en-zh-Hant"});
    }

    void theVoiceDetectorInPlaceIsUsed_data()
    {
        QTest::addColumn<ModelState>("installed");
        QTest::addColumn<bool>("isShipped");
        QTest::addColumn<QString>("detector");
        QTest::addColumn<QStringList>("needed"); // by the four languages
        const QStringList alone {"four"};
        const QStringList both {"four", "listener"};
        using enum ModelState;
        QTest::newRow("the user's goes first") << installed << true << "listener" << both;
        QTest::newRow("the user's alone") << installed << false << "listener" << both;
        QTest::newRow("the program's") << missing << true << "english-speech" << alone;
        QTest::newRow("the user's is not complete") << partial << true << "english-speech" << alone;
        QTest::newRow("the user's is damaged") << damaged << true << "english-speech" << alone;
        QTest::newRow("neither") << missing << false << "" << both;
        QTest::newRow("neither, and one is damaged") << damaged << false << "" << both;
    }
    void theVoiceDetectorInPlaceIsUsed()
    {
        QFETCH(ModelState, installed);
        QFETCH(bool, isShipped);
        QFETCH(QString, detector);
        QFETCH(QStringList, needed);
        bring("listener", installed);
        if (isShipped) {
            test::shipBundledModel(m_scratch->filePath("program"));
        }
        const ModelEntry *const found = voiceDetectorInPlace(*m_store);
        QCOMPARE(found ? found->id : QString(), detector);

        bring("four", ModelState::installed);
        const ModelGroup four = modelGroups(m_store->catalogue())[2];
        QCOMPARE(ids(neededModels(four, *m_store)), needed);
        QCOMPARE(
            int(groupState(four, *m_store)), int(detector.isEmpty() ? installed : ModelState::installed));
    }

    void aGroupIsAsGoodAsItsWorstModel_data()
    {
        QTest::addColumn<ModelState>("first");
        QTest::addColumn<ModelState>("second");
        QTest::addColumn<ModelState>("whole");
        using enum ModelState;
        QTest::newRow("all there") << installed << installed << installed;
        QTest::newRow("nothing there") << missing << missing << missing;
        QTest::newRow("the second is missing") << installed << missing << missing;
        QTest::newRow("begun") << missing << partial << partial;
        QTest::newRow("begun, the other way round") << partial << missing << partial;
        QTest::newRow("damaged") << damaged << installed << damaged;
        QTest::newRow("damage goes before all") << partial << damaged << damaged;
    }
    void aGroupIsAsGoodAsItsWorstModel()
    {
        QFETCH(ModelState, first);
        QFETCH(ModelState, second);
        QFETCH(ModelState, whole);
        bring("ja-en", first);
        bring("en-zh-Hant", second);
        QCOMPARE(int(groupState(modelGroups(m_store->catalogue())[0], *m_store)), int(whole));
    }

private:
    /// Brings a model into a state.
    void bring(const QString &id, ModelState state) const
    {
        const ModelEntry &entry = m_store->catalogue().entry(id);
        const QString folder = m_store->modelFolder(entry);
        if (state == ModelState::partial) {
            QVERIFY(QDir().mkpath(m_store->partialFolder(entry)));
        }
        if (state == ModelState::installed || state == ModelState::damaged) {
            QVERIFY(QDir().mkpath(folder));
            QFile file(folder + '/' + id + ".bin");
            QVERIFY(file.open(QIODevice::WriteOnly));
            QCOMPARE(file.write("bytes"), 5);
            const ModelManifest manifest {{{id + ".bin", 5, test::sha256Of("bytes")}},
                QDateTime(QDate(2026, 1, 31), QTime(8, 5), QTimeZone::utc()), state == ModelState::damaged};
            manifest.write(folder);
        }
        QCOMPARE(int(m_store->state(entry)), int(state));
    }

    std::unique_ptr<QTemporaryDir> m_scratch;
    std::unique_ptr<ModelStore> m_store;
};

LUMAPHONE_TEST(ModelGroupTest)

} // namespace modelgrouptest

#include "ModelGroupTest.moc"
