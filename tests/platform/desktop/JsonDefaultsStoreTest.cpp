#include "platform/desktop/JsonDefaultsStore.h"

#include "base/AtomicFile.h"
#include "support/ChildProcess.h"
#include "support/VirtualClock.h"
#include "support/program/TestProgram.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

#include <cstdio>
#include <limits>

namespace jsondefaultsstoretest {

using namespace lumaphone;
using namespace lumaphone::test;
using namespace std::chrono_literals;

namespace {

const auto fontSize = QStringLiteral("lumaphone.caption.fontSize");
const auto theme = QStringLiteral("lumaphone.caption.theme");

void say(const QString &line)
{
    std::printf("%s\n", qPrintable(line));
    std::fflush(stdout);
}

/// What this program does as a second process: --two-settings, --count, or --keys <prefix> <number>.
int writeAsChild(const QStringList &arguments)
{
    JsonDefaultsStore store(arguments.at(0));
    if (arguments.at(1) == QLatin1String("--two-settings")) {
        store.setObject(theme, QStringLiteral("glass"));
        store.setObject(fontSize, 50.0);
        say(QStringLiteral("written"));
        std::getchar(); // until it is killed
    } else if (arguments.at(1) == QLatin1String("--count")) {
        for (std::int64_t n = 1;; ++n) {
            store.setObject(QStringLiteral("count"), n);
            say(QString::number(n));
        }
    } else {
        for (int n = 0; n < arguments.at(3).toInt(); ++n) {
            store.setObject(arguments.at(2) + QString::number(n), std::int64_t {n});
        }
    }
    return 0;
}

/// Counts how often a file has been replaced, as far as it was looked at in between.
class Writes
{
public:
    explicit Writes(QString path)
        : m_path(std::move(path))
        , m_file(file())
    {
    }
    void look()
    {
        const quint64 now = file();
        m_count += now == m_file ? 0 : 1;
        m_file = now;
    }
    int count() const { return m_count; }

private:
    /// 0 if there is none. A file is made before the one it replaces goes, so that the two differ.
    quint64 file() const
    {
        struct stat facts = {};
        return ::stat(QFile::encodeName(m_path).constData(), &facts) == 0 ? facts.st_ino : 0;
    }

    QString m_path;
    quint64 m_file;
    int m_count = 0;
};

/// Wakes nobody until it is asked to.
class OversleepingClock final : public Clock
{
public:
    QDateTime now() const override { return {}; }
    std::chrono::nanoseconds monotonic() const override { return elapsed; }
    QCoro::Task<> sleepFor(std::chrono::nanoseconds duration) override { return m_asleep.sleepFor(duration); }
    void wake() { m_asleep.advance(elapsed); }

    std::chrono::nanoseconds elapsed {0};

private:
    VirtualClock m_asleep;
};

} // namespace

class JsonDefaultsStoreTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void aMissingFileHoldsNothing();
    void readingCreatesNothing();
    void everyKindSurvivesARestart();
    void kindsStayApart_data();
    void kindsStayApart();
    void valuesOfOtherKindsAndKeysOfOthersStay();
    void aRemovedKeyIsGone();
    void theFileIsOneObjectWithSortedKeys();
    void theFileIsTheUsersAlone();
    void aDamagedFileYieldsNothingAndIsKept_data();
    void aDamagedFileYieldsNothingAndIsKept();
    void aFolderInTheFilesPlaceIsKeptAside();
    void aSecondDamagedFileDoesNotReplaceTheFirst();
    void damageWhileRunningLosesNeitherSettingsNorFile();
    void aLinkStaysALink();
    void whatCannotBeWrittenLivesOnAndGoesWithTheNext();
    void twoSettingsAreOnDiskWhenTheProcessIsKilled();
    void aKilledWriterLeavesItsLastAcknowledgedValue();
    void twoProcessesKeepEachOthersValues();
    void anotherProcesssValueShowsAfterTheNextWrite();
    void gatheredChangesShowAtOnceAndAreWrittenWhenTheHandRests();
    void gatheredChangesNeverWaitLongerThanASecond();
    void theEndWritesWhatHasBeenGathered();
    void gatheredChangesGoWithWhatOthersHaveWritten();
    void aBusyProgramWritesWithoutBeingWoken();
    void aGatheringStoreRestsWhenNothingChanges();

private:
    QString path() const { return m_folder->filePath(QStringLiteral("lumaphone/settings.json")); }
    void put(const QByteArray &bytes) const
    {
        createFolder(m_folder->filePath(QStringLiteral("lumaphone")));
        replaceFile(path(), bytes, Durability::renamed);
    }
    QString aside(const char *number = "") const
    {
        return m_folder->filePath(
            QStringLiteral("lumaphone/settings.damaged%1.json").arg(QLatin1String(number)));
    }
    QByteArray content() const { return readFile(path()).value_or(QByteArray("(no file)")); }
    QStringList files() const
    {
        return QDir(m_folder->filePath(QStringLiteral("lumaphone")))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    }
    /// The number in the file; 0 if there is none.
    double storedFontSize() const { return JsonDefaultsStore(path()).number(fontSize).value_or(0); }
    QStringList childArguments(const QStringList &arguments) const
    {
        return QStringList {QStringLiteral("JsonDefaultsStoreTest.child"), path()} + arguments;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void JsonDefaultsStoreTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void JsonDefaultsStoreTest::aMissingFileHoldsNothing()
{
    const JsonDefaultsStore store(path());
    QVERIFY(!store.object(theme));
    QVERIFY(!store.string(theme));
    QVERIFY(!store.number(fontSize));
    QVERIFY(!store.boolean(theme));
}

void JsonDefaultsStoreTest::readingCreatesNothing()
{
    const JsonDefaultsStore store(path());
    QVERIFY(!store.object(theme));
    QVERIFY(!QFile::exists(m_folder->filePath(QStringLiteral("lumaphone"))));
}

void JsonDefaultsStoreTest::everyKindSurvivesARestart()
{
    const auto text
        = QStringLiteral("{{0, 0}, {10, 5}} \"引號\"\\\n\u0000尾").append(QChar(0)) + QStringLiteral("😀");
    {
        JsonDefaultsStore store(path());
        store.setObject(QStringLiteral("text"), text);
        store.setObject(QStringLiteral("empty"), QString());
        store.setObject(QStringLiteral("double"), 0.1);
        store.setObject(QStringLiteral("whole double"), 34.0);
        store.setObject(QStringLiteral("integer"), std::numeric_limits<std::int64_t>::min());
        store.setObject(QStringLiteral("truth"), true);
        store.setObject(QStringLiteral("鍵 with blanks"), false);
    }
    const JsonDefaultsStore store(path());
    QVERIFY(store.object(QStringLiteral("text")) == DefaultsValue(text));
    QVERIFY(store.object(QStringLiteral("empty")) == DefaultsValue(QString()));
    QVERIFY(store.object(QStringLiteral("double")) == DefaultsValue(0.1));
    QVERIFY(store.object(QStringLiteral("whole double")) == DefaultsValue(34.0));
    QVERIFY(
        store.object(QStringLiteral("integer")) == DefaultsValue(std::numeric_limits<std::int64_t>::min()));
    QVERIFY(store.object(QStringLiteral("truth")) == DefaultsValue(true));
    QVERIFY(store.object(QStringLiteral("鍵 with blanks")) == DefaultsValue(false));
}

void JsonDefaultsStoreTest::kindsStayApart_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<bool>("isText");
    QTest::addColumn<bool>("isNumber");
    QTest::addColumn<bool>("isTruth");
    QTest::newRow("text of a number") << QByteArray("\"40\"") << true << false << false;
    QTest::newRow("whole number") << QByteArray("40") << false << true << false;
    QTest::newRow("fraction") << QByteArray("40.5") << false << true << false;
    QTest::newRow("beyond 64 bits signed") << QByteArray("18446744073709551615") << false << true << false;
    QTest::newRow("truth") << QByteArray("true") << false << false << true;
    QTest::newRow("null") << QByteArray("null") << false << false << false;
    QTest::newRow("array") << QByteArray("[40]") << false << false << false;
    QTest::newRow("object") << QByteArray("{\"a\":1}") << false << false << false;
}

void JsonDefaultsStoreTest::kindsStayApart()
{
    QFETCH(const QByteArray, json);
    QFETCH(const bool, isText);
    QFETCH(const bool, isNumber);
    QFETCH(const bool, isTruth);
    put("{\"key\": " + json + "}");
    const JsonDefaultsStore store(path());
    QCOMPARE(store.string(QStringLiteral("key")).has_value(), isText);
    QCOMPARE(store.number(QStringLiteral("key")).has_value(), isNumber);
    QCOMPARE(store.boolean(QStringLiteral("key")).has_value(), isTruth);
}

void JsonDefaultsStoreTest::valuesOfOtherKindsAndKeysOfOthersStay()
{
    put(R"({"z.future": {"nested": [1, null, "x"]}, "other": 18446744073709551615, "lumaphone.caption.theme": "light"})");
    JsonDefaultsStore store(path());
    store.setObject(theme, QStringLiteral("dark"));
    QCOMPARE(content(), QByteArray(R"({
  "lumaphone.caption.theme": "dark",
  "other": 18446744073709551615,
  "z.future": {
    "nested": [
      1,
      null,
      "x"
    ]
  }
}
)"));
}

void JsonDefaultsStoreTest::aRemovedKeyIsGone()
{
    JsonDefaultsStore store(path());
    store.setObject(theme, QStringLiteral("dark"));
    store.setObject(fontSize, 12.0);
    store.removeObject(theme);
    QVERIFY(!store.object(theme));
    QVERIFY(!JsonDefaultsStore(path()).object(theme));
    QVERIFY(JsonDefaultsStore(path()).object(fontSize) == DefaultsValue(12.0));
}

void JsonDefaultsStoreTest::theFileIsOneObjectWithSortedKeys()
{
    JsonDefaultsStore store(path());
    store.setObject(theme, QStringLiteral("玻璃"));
    store.setObject(fontSize, 34.0);
    QCOMPARE(content(),
        QByteArray(
            "{\n  \"lumaphone.caption.fontSize\": 34.0,\n  \"lumaphone.caption.theme\": \"玻璃\"\n}\n"));
}

void JsonDefaultsStoreTest::theFileIsTheUsersAlone()
{
    JsonDefaultsStore store(path());
    store.setObject(theme, QStringLiteral("dark"));
    QCOMPARE(QFile(path()).permissions()
            & (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther),
        QFile::Permissions());
}

void JsonDefaultsStoreTest::aDamagedFileYieldsNothingAndIsKept_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("cut off") << QByteArray("{\"lumaphone.caption.theme\": \"gla");
    QTest::newRow("no JSON") << QByteArray("[General]\ntheme=glass\n");
    QTest::newRow("an array") << QByteArray("[{\"lumaphone.caption.theme\": \"glass\"}]");
    QTest::newRow("a text") << QByteArray("\"glass\"");
    QTest::newRow("null") << QByteArray("null");
    QTest::newRow("something behind it") << QByteArray("{} {}");
    QTest::newRow("not UTF-8") << QByteArray("{\"lumaphone.caption.theme\": \"\xff\"}");
    QTest::newRow("zeros") << QByteArray(4096, '\0');
    QTest::newRow("very deep") << QByteArray(200000, '[');
}

void JsonDefaultsStoreTest::aDamagedFileYieldsNothingAndIsKept()
{
    QFETCH(const QByteArray, bytes);
    put(bytes);
    JsonDefaultsStore store(path());
    QVERIFY(!store.object(theme));
    QCOMPARE(content(), bytes);
    store.setObject(theme, QStringLiteral("light"));
    QVERIFY(JsonDefaultsStore(path()).object(theme) == DefaultsValue(QStringLiteral("light")));
    QCOMPARE(readFile(aside()).value_or("(gone)"), bytes);
}

void JsonDefaultsStoreTest::aFolderInTheFilesPlaceIsKeptAside()
{
    createFolder(path());
    JsonDefaultsStore store(path());
    QVERIFY(!store.object(theme));
    store.setObject(theme, QStringLiteral("light"));
    QVERIFY(JsonDefaultsStore(path()).object(theme) == DefaultsValue(QStringLiteral("light")));
    QVERIFY(QFileInfo(aside()).isDir());
}

void JsonDefaultsStoreTest::aSecondDamagedFileDoesNotReplaceTheFirst()
{
    for (const QByteArray bytes : {"first", "second", "third"}) {
        put(bytes);
        JsonDefaultsStore(path()).setObject(theme, QStringLiteral("light"));
    }
    QCOMPARE(readFile(aside()).value_or("(gone)"), QByteArray("first"));
    QCOMPARE(readFile(aside("-2")).value_or("(gone)"), QByteArray("second"));
    QCOMPARE(readFile(aside("-3")).value_or("(gone)"), QByteArray("third"));
}

void JsonDefaultsStoreTest::damageWhileRunningLosesNeitherSettingsNorFile()
{
    JsonDefaultsStore store(path());
    store.setObject(theme, QStringLiteral("light"));
    put("{ by hand");
    store.setObject(fontSize, 20.0);
    const JsonDefaultsStore again(path());
    QVERIFY(again.object(theme) == DefaultsValue(QStringLiteral("light")));
    QVERIFY(again.object(fontSize) == DefaultsValue(20.0));
    QCOMPARE(readFile(aside()).value_or("(gone)"), QByteArray("{ by hand"));
}

void JsonDefaultsStoreTest::aLinkStaysALink()
{
    const QString target = m_folder->filePath(QStringLiteral("kept elsewhere.json"));
    replaceFile(target, "{}", Durability::renamed);
    createFolder(m_folder->filePath(QStringLiteral("lumaphone")));
    QVERIFY(QFile::link(target, path()));
    JsonDefaultsStore store(path());
    store.setObject(theme, QStringLiteral("light"));
    QVERIFY(QFileInfo(path()).isSymLink());
    QVERIFY(readFile(target)->contains("light"));
}

void JsonDefaultsStoreTest::whatCannotBeWrittenLivesOnAndGoesWithTheNext()
{
    // A file where the folder should be: nothing can be written.
    const QString obstacle = m_folder->filePath(QStringLiteral("lumaphone"));
    replaceFile(obstacle, "in the way", Durability::renamed);
    JsonDefaultsStore store(path());
    store.setObject(theme, QStringLiteral("light"));
    QVERIFY(store.object(theme) == DefaultsValue(QStringLiteral("light")));
    removeFile(obstacle);
    store.setObject(fontSize, 20.0);
    const JsonDefaultsStore again(path());
    QVERIFY(again.object(theme) == DefaultsValue(QStringLiteral("light")));
    QVERIFY(again.object(fontSize) == DefaultsValue(20.0));
}

void JsonDefaultsStoreTest::twoSettingsAreOnDiskWhenTheProcessIsKilled()
{
    ChildProcess writer(
        QCoreApplication::applicationFilePath(), childArguments({QStringLiteral("--two-settings")}));
    QCOMPARE(writer.nextLine(), QStringLiteral("written"));
    writer.kill();
    const JsonDefaultsStore store(path());
    QVERIFY(store.object(theme) == DefaultsValue(QStringLiteral("glass")));
    QVERIFY(store.object(fontSize) == DefaultsValue(50.0));
}

void JsonDefaultsStoreTest::aKilledWriterLeavesItsLastAcknowledgedValue()
{
    put(R"({"lumaphone.caption.theme": "light"})");
    qint64 formerCount = 0;
    for (int round = 0; round < 10; ++round) {
        ChildProcess writer(
            QCoreApplication::applicationFilePath(), childArguments({QStringLiteral("--count")}));
        qint64 acknowledged = 0;
        for (int lines = 0; lines <= round; ++lines) {
            acknowledged = writer.nextLine().toLongLong();
        }
        QVERIFY(acknowledged > 0);
        writer.kill();
        for (QString line = writer.nextLine(); !line.isEmpty(); line = writer.nextLine()) {
            acknowledged = line.toLongLong();
        }
        const JsonDefaultsStore store(path());
        const double count = store.number(QStringLiteral("count")).value_or(-1);
        QVERIFY2(count >= static_cast<double>(acknowledged), qPrintable(QString::number(count)));
        QVERIFY2(count <= static_cast<double>(acknowledged + 1), qPrintable(QString::number(count)));
        QVERIFY(store.object(theme) == DefaultsValue(QStringLiteral("light")));
        formerCount += acknowledged;
    }
    QVERIFY(formerCount >= 55);
    for (const QString &name : files()) {
        QVERIFY2(!name.contains(QStringLiteral("damaged")), qPrintable(name));
    }
}

void JsonDefaultsStoreTest::twoProcessesKeepEachOthersValues()
{
    const QString program = QCoreApplication::applicationFilePath();
    const int number = 40;
    const auto keysOf = [&](const char *prefix) {
        return childArguments(
            {QStringLiteral("--keys"), QString::fromLatin1(prefix), QString::number(number)});
    };
    ChildProcess one(program, keysOf("one."));
    ChildProcess two(program, keysOf("two."));
    QCOMPARE(one.wait(), 0);
    QCOMPARE(two.wait(), 0);
    const JsonDefaultsStore store(path());
    for (std::int64_t n = 0; n < number; ++n) {
        for (const char *prefix : {"one.", "two."}) {
            const QString key = QString::fromLatin1(prefix) + QString::number(n);
            QVERIFY2(store.object(key) == DefaultsValue(n), qPrintable(key));
        }
    }
}

void JsonDefaultsStoreTest::anotherProcesssValueShowsAfterTheNextWrite()
{
    JsonDefaultsStore here(path());
    JsonDefaultsStore there(path());
    here.setObject(theme, QStringLiteral("light"));
    there.setObject(fontSize, 20.0);
    QVERIFY(there.object(theme) == DefaultsValue(QStringLiteral("light")));
    here.setObject(theme, QStringLiteral("glass"));
    QVERIFY(here.object(fontSize) == DefaultsValue(20.0));
    QVERIFY(JsonDefaultsStore(path()).object(fontSize) == DefaultsValue(20.0));
}

void JsonDefaultsStoreTest::gatheredChangesShowAtOnceAndAreWrittenWhenTheHandRests()
{
    const auto clock = std::make_shared<VirtualClock>();
    JsonDefaultsStore store(path(), clock);
    Writes writes(path());
    for (int step = 1; step <= 50; ++step) {
        store.setObject(fontSize, 20.0 + step);
        QCOMPARE(store.number(fontSize), std::optional<double>(20.0 + step));
        clock->advance(10ms);
        writes.look();
    }
    QCOMPARE(writes.count(), 0);
    clock->advance(JsonDefaultsStore::rest - 11ms);
    writes.look();
    QCOMPARE(writes.count(), 0);
    clock->advance(1ms);
    writes.look();
    QCOMPARE(writes.count(), 1);
    QCOMPARE(storedFontSize(), 70.0);
}

void JsonDefaultsStoreTest::gatheredChangesNeverWaitLongerThanASecond()
{
    const auto clock = std::make_shared<VirtualClock>();
    JsonDefaultsStore store(path(), clock);
    Writes writes(path());
    // The value is the time at which it was set.
    for (int now = 0; now < 10'000; now += 20) {
        store.setObject(fontSize, double(now));
        clock->advance(20ms);
        writes.look();
        QVERIFY2(now - storedFontSize() <= 1000, qPrintable(QString::number(now)));
    }
    QVERIFY2(writes.count() == 9 || writes.count() == 10, qPrintable(QString::number(writes.count())));
    clock->advance(JsonDefaultsStore::longestDelay);
    QCOMPARE(storedFontSize(), 9980.0);
}

void JsonDefaultsStoreTest::theEndWritesWhatHasBeenGathered()
{
    const auto clock = std::make_shared<VirtualClock>();
    {
        JsonDefaultsStore store(path(), clock);
        store.setObject(fontSize, 41.0);
        store.setObject(theme, QStringLiteral("light"));
        store.removeObject(theme);
        QCOMPARE(content(), QByteArray("(no file)"));
    }
    QCOMPARE(storedFontSize(), 41.0);
    QVERIFY(!JsonDefaultsStore(path()).object(theme));
    clock->advance(JsonDefaultsStore::longestDelay); // nobody is there any more
}

void JsonDefaultsStoreTest::gatheredChangesGoWithWhatOthersHaveWritten()
{
    const auto clock = std::make_shared<VirtualClock>();
    JsonDefaultsStore here(path(), clock);
    JsonDefaultsStore there(path());
    here.setObject(fontSize, 41.0);
    there.setObject(theme, QStringLiteral("light"));
    QVERIFY(JsonDefaultsStore(path()).object(theme) == DefaultsValue(QStringLiteral("light")));
    clock->advance(JsonDefaultsStore::rest);
    QCOMPARE(storedFontSize(), 41.0);
    QVERIFY(here.object(theme) == DefaultsValue(QStringLiteral("light")));
    QVERIFY(JsonDefaultsStore(path()).object(theme) == DefaultsValue(QStringLiteral("light")));
}

void JsonDefaultsStoreTest::aBusyProgramWritesWithoutBeingWoken()
{
    const auto clock = std::make_shared<OversleepingClock>();
    JsonDefaultsStore store(path(), clock);
    store.setObject(fontSize, 41.0);
    clock->elapsed = JsonDefaultsStore::longestDelay;
    store.setObject(fontSize, 42.0);
    QCOMPARE(storedFontSize(), 42.0);
    clock->wake();
    QCOMPARE(storedFontSize(), 42.0);
}

void JsonDefaultsStoreTest::aGatheringStoreRestsWhenNothingChanges()
{
    const auto clock = std::make_shared<VirtualClock>();
    JsonDefaultsStore store(path(), clock);
    QCOMPARE(clock->sleepCount(), 0);
    store.setObject(fontSize, 41.0);
    clock->advance(JsonDefaultsStore::longestDelay);
    QCOMPARE(clock->sleepers(), std::size_t {0});
}

LUMAPHONE_TEST(JsonDefaultsStoreTest)
LUMAPHONE_TEST_CHILD(JsonDefaultsStoreTest, writeAsChild)

} // namespace jsondefaultsstoretest

#include "JsonDefaultsStoreTest.moc"
