#include "models/ModelStore.h"

#include "base/FileLock.h"
#include "models/ModelError.h"
#include "models/ModelManifest.h"
#include "support/Coroutines.h"
#include "support/ModelFixtures.h"
#include "support/program/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QObject>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>

namespace modelstoretest {

using namespace lumaphone;

namespace {

/// One model of two files in an archive, with a licence that nothing is known of.
QByteArray listing()
{
    // The meta-object compiler takes two slashes in a raw text for a comment.
    const QString text = QStringLiteral(R"({"models": [{"id": "ja-en", "kind": "translation", "title": "J",
        "languages": ["ja", "en"], "licence": {"text": "free", "mustBeAccepted": false},
        "downloads": [{"url": "https:\/\/example.org/model.tar.bz2", "compression": "tar.bz2", "sha256": "%1",
            "files": [%2, %3, {"role": "licence", "name": "LICENSE"}]}]}]})");
    return text
        .arg(test::sha256Of("archive"), test::listedFile("model", "model.bin", "weights"),
            test::listedFile("sourceVocabulary", "vocab.spm", "words"))
        .toUtf8();
}

/// The record of an installation as it has always been written.
QByteArray record(const QByteArray &model, const QByteArray &licence)
{
    const auto file = [](const char *name, const QByteArray &bytes) {
        return QStringLiteral(R"({"name": "%1", "sha256": "%2", "size": %3})")
            .arg(name, test::sha256Of(bytes))
            .arg(bytes.size());
    };
    return QStringLiteral(R"({"files": [%1, %2, %3], "installedAt": "2026-01-31T08:05:00Z",
        "isDamaged": false})")
        .arg(file("model.bin", model), file("vocab.spm", "words"), file("LICENSE", licence))
        .toUtf8();
}

} // namespace

class ModelStoreTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_scratch = std::make_unique<QTemporaryDir>();
        m_store = std::make_unique<ModelStore>(
            m_scratch->filePath("資料 데이터/Models"), ModelCatalogue::fromJson(listing(), "test"));
    }

    void nothingIsMissing()
    {
        QCOMPARE(m_store->state(entry()), ModelState::missing);
        QVERIFY(!m_store->installed(entry()));
        m_store->remove(entry());
        QVERIFY(!QDir(m_store->folder()).exists());
    }

    void whatWasBegunIsPartial()
    {
        QVERIFY(QDir().mkpath(m_store->partialFolder(entry())));
        QCOMPARE(m_store->state(entry()), ModelState::partial);
        QVERIFY(!m_store->installed(entry()));
    }

    void aCompleteFolderIsInstalled()
    {
        install();
        QCOMPARE(m_store->state(entry()), ModelState::installed);
        const auto model = m_store->installed(entry());
        QVERIFY(model);
        QCOMPARE(model->require("model"), m_store->modelFolder(entry()) + "/model.bin");
        QCOMPARE(model->path("shortlist"), std::nullopt);
        m_store->verify(entry());
    }

    void changesAreNoticed_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("content"); // null: removed
        QTest::addColumn<bool>("atOnce"); // without reading the files
        QTest::newRow("a file is gone") << "vocab.spm" << QByteArray() << true;
        QTest::newRow("a file is shorter") << "model.bin" << QByteArray("w") << true;
        QTest::newRow("a byte is another") << "model.bin" << QByteArray("weighty") << false;
        QTest::newRow("the licence is another") << "LICENSE" << QByteArray("FREE") << false;
        QTest::newRow("the record is gone") << "installed.json" << QByteArray() << true;
        QTest::newRow("the record is no record") << "installed.json" << QByteArray("{}") << true;
        QTest::newRow("the record is of other kinds")
            << "installed.json" << QByteArray(R"({"files": [1], "installedAt": 2, "isDamaged": 3})") << true;
    }
    void changesAreNoticed()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, content);
        QFETCH(bool, atOnce);
        install();
        if (content.isNull()) {
            QVERIFY(QFile::remove(m_store->modelFolder(entry()) + '/' + name));
        } else {
            write(name, content);
        }
        QCOMPARE(m_store->state(entry()), atOnce ? ModelState::damaged : ModelState::installed);
        QVERIFY(test::thrownBy<ModelError>([this] { m_store->verify(entry()); }));
        QCOMPARE(m_store->state(entry()), ModelState::damaged);
        QVERIFY(!m_store->installed(entry()));
    }

    void anEarlierInstallationIsWhatItsRecordSays_data()
    {
        QTest::addColumn<QByteArray>("model"); // what was installed, and recorded
        QTest::addColumn<QByteArray>("licence");
        QTest::addColumn<ModelState>("state");
        QTest::newRow("the files that are known now")
            << QByteArray("weights") << QByteArray("free") << ModelState::installed;
        QTest::newRow("a licence that nothing is known of")
            << QByteArray("weights") << QByteArray("another licence") << ModelState::installed;
        QTest::newRow("another file of the same size")
            << QByteArray("weighty") << QByteArray("free") << ModelState::damaged;
        QTest::newRow("another file") << QByteArray("old") << QByteArray("free") << ModelState::damaged;
    }
    void anEarlierInstallationIsWhatItsRecordSays()
    {
        QFETCH(QByteArray, model);
        QFETCH(QByteArray, licence);
        QFETCH(ModelState, state);
        install();
        write("model.bin", model);
        write("LICENSE", licence);
        write("installed.json", record(model, licence));
        QCOMPARE(int(m_store->state(entry())), int(state));
        if (state == ModelState::installed) {
            m_store->verify(entry());
            QCOMPARE(contents("installed.json"), record(model, licence)); // nothing to write
        } else {
            QVERIFY(test::thrownBy<ModelError>([this] { m_store->verify(entry()); }));
            QCOMPARE(m_store->state(entry()), ModelState::damaged);
        }
    }

    void theRightFilesMendAWrongRecord()
    {
        install();
        write("installed.json", record("weighty", "free"));
        QCOMPARE(m_store->state(entry()), ModelState::damaged);
        m_store->verify(entry());
        QCOMPARE(m_store->state(entry()), ModelState::installed);
    }

    void aRepairedModelIsUsedAgainAfterACheck()
    {
        install();
        write("model.bin", "weighty");
        QVERIFY(test::thrownBy<ModelError>([this] { m_store->verify(entry()); }));
        write("model.bin", "weights");
        QCOMPARE(m_store->state(entry()), ModelState::damaged);
        m_store->verify(entry());
        QCOMPARE(m_store->state(entry()), ModelState::installed);
    }

    void aRemovedModelIsGone()
    {
        install();
        QVERIFY(QDir().mkpath(m_store->partialFolder(entry())));
        m_store->remove(entry());
        QCOMPARE(m_store->state(entry()), ModelState::missing);
        QCOMPARE(QDir(m_store->folder()).entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot),
            QStringList());
    }

    void whoUsesAModelGoesOnWhenItIsRemoved()
    {
        install();
        QFile open(m_store->modelFolder(entry()) + "/model.bin");
        QVERIFY(open.open(QIODevice::ReadOnly));
        m_store->remove(entry());
        QCOMPARE(open.readAll(), QByteArray("weights"));
    }

    void aModelThatIsBeingInstalledStays()
    {
        install();
        const auto lock = FileLock::tryTake(m_store->lockPath(entry()));
        QVERIFY(lock);
        const auto error = test::thrownBy<ModelError>([this] { m_store->remove(entry()); });
        QVERIFY(error);
        QCOMPARE(error->errorCase(), ModelError::Case::busy);
        QCOMPARE(m_store->state(entry()), ModelState::installed);
    }

private:
    const ModelEntry &entry() const { return m_store->catalogue().entry("ja-en"); }
    void write(const QString &name, const QByteArray &bytes) const
    {
        QFile file(m_store->modelFolder(entry()) + '/' + name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(bytes), bytes.size());
    }
    QByteArray contents(const QString &name) const
    {
        QFile file(m_store->modelFolder(entry()) + '/' + name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void install() const
    {
        QVERIFY(QDir().mkpath(m_store->modelFolder(entry())));
        write("model.bin", "weights");
        write("vocab.spm", "words");
        write("LICENSE", "free");
        ModelManifest manifest;
        manifest.files = {{"model.bin", 7, test::sha256Of("weights")},
            {"vocab.spm", 5, test::sha256Of("words")}, {"LICENSE", 4, test::sha256Of("free")}};
        manifest.installedAt = QDateTime(QDate(2026, 1, 31), QTime(8, 5), QTimeZone::utc());
        manifest.write(m_store->modelFolder(entry()));
    }

    std::unique_ptr<QTemporaryDir> m_scratch;
    std::unique_ptr<ModelStore> m_store;
};

LUMAPHONE_TEST(ModelStoreTest)

} // namespace modelstoretest

#include "ModelStoreTest.moc"
