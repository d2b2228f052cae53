#include "glossary/GlossaryImport.h"

#include "base/AtomicFile.h"
#include "base/Json.h"
#include "glossary/LumaphoneGlossaryDocument.h"
#include "glossary/LumaphoneGlossaryError.h"
#include "support/Coroutines.h"
#include "support/CountedUuids.h"
#include "support/GlossaryTerms.h"
#include "support/program/TestProgram.h"

#include <QTemporaryDir>
#include <QTest>

#include <cerrno>

namespace glossaryimporttest {

using namespace lumaphone;

class GlossaryImportTest : public QObject
{
    Q_OBJECT

private slots:
    void theExtensionNamesTheFormat_data();
    void theExtensionNamesTheFormat();
    void anyOtherExtensionIsRefused_data();
    void anyOtherExtensionIsRefused();
    void aByteOrderMarkIsSkipped_data();
    void aByteOrderMarkIsSkipped();
    void bytesThatAreNotUtf8AreRefused_data();
    void bytesThatAreNotUtf8AreRefused();
    void aMissingFileIsAnError();
    void aFolderIsAnError();
    void theFileIsReadBeforeItsFormatIsLookedAt();
    void jsonIsADocumentOrABareArray_data();
    void jsonIsADocumentOrABareArray();
    void jsonKeepsIdentities();
    void jsonThatIsNeitherIsRefused_data();
    void jsonThatIsNeitherIsRefused();

private:
    QString write(const QString &name, const QByteArray &bytes) const;
    QList<LumaphoneGlossaryTerm> read(const QString &name, const QByteArray &bytes) const;

    QTemporaryDir m_folder;
};

namespace {

const QByteArray yaml = "- source: a\n  target: b";
const QByteArray csv = "a,b";
const QByteArray bareArray = R"([{"id": "12345678-9ABC-4EF0-8234-56789ABCDEF0", "source": "a", "target": "b",
    "mode": "translate", "note": "", "isEnabled": true, "caseSensitive": false}])";
const QByteArray byteOrderMark = "\xEF\xBB\xBF";

} // namespace

QString GlossaryImportTest::write(const QString &name, const QByteArray &bytes) const
{
    const QString path = m_folder.filePath(name);
    replaceFile(path, bytes, Durability::renamed);
    return path;
}

QList<LumaphoneGlossaryTerm> GlossaryImportTest::read(const QString &name, const QByteArray &bytes) const
{
    return decodeTerms(write(name, bytes), test::countedUuids());
}

void GlossaryImportTest::theExtensionNamesTheFormat_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("json") << "a.json" << bareArray;
    QTest::newRow("JSON") << "a.JSON" << bareArray;
    QTest::newRow("yaml") << "a.yaml" << yaml;
    QTest::newRow("yml") << "a.yml" << yaml;
    QTest::newRow("YML") << "a.YML" << yaml;
    QTest::newRow("Yaml") << "a.Yaml" << yaml;
    QTest::newRow("csv") << "a.csv" << csv;
    QTest::newRow("Csv") << "a.Csv" << csv;
    QTest::newRow("the last extension counts") << "a.json.csv" << csv;
    QTest::newRow("a name in Chinese") << "術語 表.csv" << csv;
}

void GlossaryImportTest::theExtensionNamesTheFormat()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    QCOMPARE(test::lines(read(name, bytes)), test::strings({"a|b|translate||true|false"}));
}

void GlossaryImportTest::anyOtherExtensionIsRefused_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("txt") << "a.txt";
    QTest::newRow("none") << "a";
    QTest::newRow("empty") << "a.";
    QTest::newRow("a hidden file") << ".yaml";
    QTest::newRow("in another place") << "yaml.txt";
    QTest::newRow("longer") << "a.yamlx";
}

void GlossaryImportTest::anyOtherExtensionIsRefused()
{
    QFETCH(QString, name);
    const auto error = test::thrownBy<LumaphoneGlossaryError>([&] { read(name, yaml); });
    QVERIFY(error);
    QCOMPARE(error->errorCase(), LumaphoneGlossaryError::unsupportedFormat);
    QCOMPARE(error->errorDescription(), QStringLiteral("Glossary 只支援 JSON、YAML 或 CSV。"));
}

void GlossaryImportTest::aByteOrderMarkIsSkipped_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("json") << "a.json" << bareArray;
    QTest::newRow("yaml that begins with an item") << "a.yaml" << yaml;
    QTest::newRow("yaml that begins with terms") << "a.yaml"
                                                 << "terms:\n" + yaml;
    QTest::newRow("csv") << "a.csv" << csv;
    QTest::newRow("csv with a header") << "a.csv"
                                       << "source,target\n" + csv;
}

void GlossaryImportTest::aByteOrderMarkIsSkipped()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    QCOMPARE(test::lines(read(name, byteOrderMark + bytes)), test::strings({"a|b|translate||true|false"}));
}

void GlossaryImportTest::bytesThatAreNotUtf8AreRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("Latin-1") << QByteArray("caf\xE9,b");
    QTest::newRow("Big5") << QByteArray("\xB3\x4E\xBB\x79,b");
    QTest::newRow("a truncated character at the end") << QByteArray("a,\xE6\x9D");
    QTest::newRow("an overlong form") << QByteArray("a,\xC0\xAF");
    QTest::newRow("a surrogate") << QByteArray("a,\xED\xA0\x80");
    QTest::newRow("beyond the last code point") << QByteArray("a,\xF4\x90\x80\x80");
    QTest::newRow("UTF-16") << QByteArray("\xFF\xFE"
                                          "a\0,\0b\0",
        8);
    QTest::newRow("half a byte-order mark") << QByteArray("\xEF\xBB");
}

void GlossaryImportTest::bytesThatAreNotUtf8AreRefused()
{
    QFETCH(QByteArray, bytes);
    for (const char *name : {"bad.csv", "bad.yaml", "bad.json", "bad.txt"}) {
        const auto error = test::thrownBy<PlatformError>([&] { read(QString::fromLatin1(name), bytes); });
        QVERIFY2(error, name);
        QVERIFY2(error->errorDescription().contains(QString::fromLatin1(name)), error->what());
    }
}

void GlossaryImportTest::aMissingFileIsAnError()
{
    const QString path = m_folder.filePath(QStringLiteral("missing.yaml"));
    const auto error = test::thrownBy<FileError>([&] { decodeTerms(path, test::countedUuids()); });
    QVERIFY(error);
    QCOMPARE(error->errorNumber(), ENOENT);
    QVERIFY(error->errorDescription().contains(path));
}

void GlossaryImportTest::aFolderIsAnError()
{
    const QString path = m_folder.filePath(QStringLiteral("folder.yaml"));
    createFolder(path);
    const auto error = test::thrownBy<FileError>([&] { decodeTerms(path, test::countedUuids()); });
    QVERIFY(error);
    QCOMPARE(error->errorNumber(), EISDIR);
}

void GlossaryImportTest::theFileIsReadBeforeItsFormatIsLookedAt()
{
    const QString path = m_folder.filePath(QStringLiteral("missing.txt"));
    QVERIFY(test::thrownBy<FileError>([&] { decodeTerms(path, test::countedUuids()); }));
}

void GlossaryImportTest::jsonIsADocumentOrABareArray_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("count");
    QTest::newRow("a bare array") << bareArray << 1;
    QTest::newRow("a document") << "{\"terms\": " + bareArray + '}' << 1;
    QTest::newRow("an empty array") << QByteArray("[]") << 0;
    QTest::newRow("an empty document") << QByteArray("{\"terms\": []}") << 0;
    QTest::newRow("white space around") << " \n" + bareArray + "\n " << 1;
}

void GlossaryImportTest::jsonIsADocumentOrABareArray()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, count);
    QCOMPARE(read(QStringLiteral("a.json"), bytes).size(), count);
}

void GlossaryImportTest::jsonKeepsIdentities()
{
    const auto terms = read(QStringLiteral("a.json"), bareArray);
    QCOMPARE(terms.value(0).id, QUuid::fromString(QLatin1String("12345678-9abc-4ef0-8234-56789abcdef0")));
}

void GlossaryImportTest::jsonThatIsNeitherIsRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("named");
    QTest::newRow("empty") << QByteArray() << "JSON";
    QTest::newRow("no JSON") << QByteArray("terms:") << "JSON";
    QTest::newRow("cut off") << bareArray.chopped(1) << "JSON";
    QTest::newRow("a number") << QByteArray("1") << "陣列";
    QTest::newRow("an object without terms") << QByteArray("{}") << "陣列";
    QTest::newRow("a document with a bad term speaks of the array")
        << QByteArray("{\"terms\": [{}]}") << "陣列";
    QTest::newRow("an array with a bad term") << QByteArray("[{}]") << "第 1 個術語";
    QTest::newRow("a term without caseSensitive")
        << QByteArray(bareArray).replace("caseSensitive", "other") << "caseSensitive";
    QTest::newRow("a term without id") << QByteArray(bareArray).replace("\"id\"", "\"other\"") << "id";
    QTest::newRow("nested without end") << QByteArray(100000, '[') << "512";
}

void GlossaryImportTest::jsonThatIsNeitherIsRefused()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, named);
    const auto error = test::thrownBy<json::DecodingError>([&] { read(QStringLiteral("bad.json"), bytes); });
    QVERIFY(error);
    QVERIFY2(error->errorDescription().contains(named), error->what());
    QVERIFY(error->errorDescription().size() < 400);
}

LUMAPHONE_TEST(GlossaryImportTest)

} // namespace glossaryimporttest

#include "GlossaryImportTest.moc"
