#include "models/CheckedFiles.h"

#include "base/AtomicFile.h"
#include "models/ModelError.h"
#include "support/Coroutines.h"
#include "support/ModelFixtures.h"
#include "support/program/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QObject>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>

#include <atomic>
#include <thread>

namespace checkedfilestest {

using namespace lumaphone;

namespace {

using Clock = std::chrono::system_clock;

FileDigest digestOfBytes(const QByteArray &bytes)
{
    return {bytes.size(), test::sha256Of(bytes)};
}

/// Another content of the same size, with the time of its last change as it was.
void changeSecretly(const QString &path, const QByteArray &bytes)
{
    struct stat before = {};
    QCOMPARE(::stat(QFile::encodeName(path).constData(), &before), 0);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QCOMPARE(file.write(bytes), bytes.size());
    file.close();
    const timespec times[] {before.st_atim, before.st_mtim};
    QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
}

} // namespace

class CheckedFilesTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_scratch = std::make_unique<QTemporaryDir>();
        m_reads = 0;
        m_later = std::chrono::hours(1);
        write("weights");
    }

    void aRightFileIsReadOnce()
    {
        CheckedFiles checked = process();
        checked.demand(path(), digestOfBytes("weights"));
        checked.demand(path(), digestOfBytes("weights"));
        QCOMPARE(m_reads, 1);
    }

    void anotherProcessNeedNotReadIt()
    {
        process().demand(path(), digestOfBytes("weights"));
        process().demand(path(), digestOfBytes("weights"));
        QCOMPARE(m_reads, 1);
    }

    void aChangeIsNoticed_data()
    {
        QTest::addColumn<std::function<void(const QString &)>>("change");
        QTest::addColumn<ModelError::Case>("error");
        using Change = std::function<void(const QString &)>;
        using enum ModelError::Case;
        QTest::newRow("a byte, with its time put back")
            << Change([](const QString &path) { changeSecretly(path, "weighty"); }) << wrongContents;
        QTest::newRow("another file in its place")
            << Change([](const QString &path) { replaceFile(path, "weighty", Durability::renamed); })
            << wrongContents;
        QTest::newRow("cut") << Change([](const QString &path) { QVERIFY(QFile::resize(path, 3)); })
                             << wrongSize;
        QTest::newRow("gone") << Change([](const QString &path) { QVERIFY(QFile::remove(path)); })
                              << fileMissing;
        QTest::newRow("a folder in its place") << Change([](const QString &path) {
            QVERIFY(QFile::remove(path));
            QVERIFY(QDir().mkdir(path));
        }) << fileMissing;
    }
    void aChangeIsNoticed()
    {
        QFETCH(std::function<void(const QString &)>, change);
        QFETCH(ModelError::Case, error);
        CheckedFiles checked = process();
        checked.demand(path(), digestOfBytes("weights"));
        change(path());
        for (int time = 0; time < 2; ++time) {
            const auto thrown
                = test::thrownBy<ModelError>([&] { checked.demand(path(), digestOfBytes("weights")); });
            QVERIFY(thrown);
            QCOMPARE(int(thrown->errorCase()), int(error));
            QCOMPARE(thrown->subject(), path());
        }
        QVERIFY(test::thrownBy<ModelError>([&] { process().demand(path(), digestOfBytes("weights")); }));
    }

    void theRightFileIsFoundAgain()
    {
        CheckedFiles checked = process();
        checked.demand(path(), digestOfBytes("weights"));
        changeSecretly(path(), "weighty");
        QVERIFY(test::thrownBy<ModelError>([&] { checked.demand(path(), digestOfBytes("weights")); }));
        changeSecretly(path(), "weights");
        checked.demand(path(), digestOfBytes("weights"));
        QCOMPARE(m_reads, 3);
    }

    void anotherExpectationIsAnotherQuestion()
    {
        CheckedFiles checked = process();
        checked.demand(path(), digestOfBytes("weights"));
        QVERIFY(test::thrownBy<ModelError>([&] { checked.demand(path(), digestOfBytes("weighty")); }));
        QCOMPARE(m_reads, 2);
    }

    void aWrongSizeNeedsNoReading()
    {
        const auto error
            = test::thrownBy<ModelError>([&] { process().demand(path(), digestOfBytes("other")); });
        QVERIFY(error);
        QCOMPARE(error->errorCase(), ModelError::Case::wrongSize);
        QCOMPARE(m_reads, 0);
    }

    void aFileThatChangedAMomentAgoIsReadAgain()
    {
        m_later = std::chrono::seconds(0);
        CheckedFiles checked = process();
        checked.demand(path(), digestOfBytes("weights"));
        checked.demand(path(), digestOfBytes("weights"));
        QCOMPARE(m_reads, 2);
        m_later = std::chrono::hours(1);
        checked.demand(path(), digestOfBytes("weights"));
        checked.demand(path(), digestOfBytes("weights"));
        QCOMPARE(m_reads, 3);
    }

    void aFileThatChangesWhileItIsReadIsReadAgain()
    {
        CheckedFiles::Environment environment = counting();
        environment.digest
            = [this, digest = environment.digest](const QString &file, const std::stop_token &stop) {
                  const FileDigest before = digest(file, stop);
                  if (m_reads == 1) {
                      changeSecretly(file, "weighty");
                  }
                  return before;
              };
        CheckedFiles checked(record(), environment);
        checked.demand(path(), digestOfBytes("weights"));
        QVERIFY(test::thrownBy<ModelError>([&] { checked.demand(path(), digestOfBytes("weights")); }));
        QCOMPARE(m_reads, 2);
    }

    void aDamagedRecordCostsAReading_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("no JSON") << QByteArray("\x00\xff{", 3);
        QTest::newRow("another shape") << QByteArray(R"({"files": 7})");
        QTest::newRow("half an entry") << QByteArray(R"({"files": [{"path": "/x", "inode": "7"}]})");
        QTest::newRow("cut") << QByteArray(R"({"files": [)");
    }
    void aDamagedRecordCostsAReading()
    {
        QFETCH(QByteArray, bytes);
        process().demand(path(), digestOfBytes("weights"));
        replaceFile(record(), bytes, Durability::renamed);
        process().demand(path(), digestOfBytes("weights"));
        QCOMPARE(m_reads, 2);
        process().demand(path(), digestOfBytes("weights")); // it has been written anew
        QCOMPARE(m_reads, 2);
    }

    void aRecordThatCannotBeWrittenCostsAReading()
    {
        CheckedFiles checked(path() + "/folder/record.json", counting());
        checked.demand(path(), digestOfBytes("weights"));
        checked.demand(path(), digestOfBytes("weights"));
        QCOMPARE(m_reads, 1); // this process remembers
        CheckedFiles(path() + "/folder/record.json", counting()).demand(path(), digestOfBytes("weights"));
        QCOMPARE(m_reads, 2);
    }

    void filesThatAreGoneAreForgotten()
    {
        process().demand(path(), digestOfBytes("weights"));
        const QString other = m_scratch->filePath("詞 é");
        replaceFile(other, "words", Durability::renamed);
        process().demand(other, digestOfBytes("words"));
        QVERIFY(readFile(record())->contains("weights"));
        QVERIFY(QFile::remove(path()));
        const QString third = m_scratch->filePath("third");
        replaceFile(third, "3", Durability::renamed);
        process().demand(third, digestOfBytes("3"));
        QVERIFY(!readFile(record())->contains("weights"));
        process().demand(other, digestOfBytes("words"));
        QCOMPARE(m_reads, 3);
    }

    void itEndsWhenItIsStopped()
    {
        std::stop_source stop;
        stop.request_stop();
        CheckedFiles checked(record());
        const auto error = test::thrownBy<ModelError>(
            [&] { checked.demand(path(), digestOfBytes("weights"), stop.get_token()); });
        QVERIFY(error);
        QCOMPARE(error->errorCase(), ModelError::Case::cancelled);
    }

    void manyAtOnceLoseNothing()
    {
        constexpr int files = 8;
        for (int i = 0; i < files; ++i) {
            replaceFile(m_scratch->filePath(QString::number(i)), QByteArray::number(i), Durability::renamed);
        }
        CheckedFiles shared = process();
        std::atomic_int failures = 0;
        {
            std::vector<std::jthread> threads;
            for (int i = 0; i < files; ++i) {
                // Every file by a process of its own, and by one that all threads share.
                threads.emplace_back([this, &shared, &failures, i] {
                    const QString file = m_scratch->filePath(QString::number(i));
                    try {
                        process().demand(file, digestOfBytes(QByteArray::number(i)));
                        shared.demand(file, digestOfBytes(QByteArray::number(i)));
                    } catch (const std::exception &) {
                        ++failures;
                    }
                });
            }
        }
        QCOMPARE(failures, 0);
        QCOMPARE(m_reads, files);
        for (int i = 0; i < files; ++i) {
            process().demand(m_scratch->filePath(QString::number(i)), digestOfBytes(QByteArray::number(i)));
        }
        QCOMPARE(m_reads, files);
    }

private:
    QString path() const { return m_scratch->filePath("weights"); }
    QString record() const { return m_scratch->filePath("cache/lumaphone/checked.json"); }
    void write(const QByteArray &bytes) const { replaceFile(path(), bytes, Durability::renamed); }
    CheckedFiles::Environment counting()
    {
        return {[this] { return Clock::now() + m_later; },
            [this](const QString &file, const std::stop_token &stop) {
                ++m_reads;
                return digestOf(file, stop);
            }};
    }
    /// As a process that has just begun.
    CheckedFiles process() { return CheckedFiles(record(), counting()); }

    std::unique_ptr<QTemporaryDir> m_scratch;
    std::atomic_int m_reads = 0; ///< of whole files
    std::chrono::seconds m_later {}; ///< how much later than the last change it is
};

LUMAPHONE_TEST(CheckedFilesTest)

} // namespace checkedfilestest

#include "CheckedFilesTest.moc"
