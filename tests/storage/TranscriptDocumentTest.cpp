#include "storage/TranscriptDocument.h"

#include "base/Json.h"
#include "support/Coroutines.h"
#include "support/CountedUuids.h"
#include "support/program/TestProgram.h"

#include <QTest>
#include <QTimeZone>

namespace transcriptdocumenttest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

TranscriptDocument sample()
{
    TranscriptDocument document;
    TranscriptRecordMetadata &metadata = document.metadata;
    metadata.id = countedUuid(0xab);
    metadata.title = QStringLiteral("會議");
    metadata.note = QStringLiteral("重要");
    metadata.createdAt = QDateTime(QDate(2026, 1, 31), QTime(8, 5, 9), QTimeZone::utc());
    metadata.startedAt = QDateTime(QDate(2026, 1, 31), QTime(7, 0), QTimeZone::utc());
    metadata.sourceLanguage = AppleSystemSpeechLanguage::automatic;
    metadata.detectedLanguage = AppleSystemSpeechLanguage::english;
    metadata.targetLanguage = QStringLiteral("zh-TW");
    metadata.providerName = QStringLiteral("Apple Translation");
    metadata.lineCount = 2;
    metadata.folderName = QStringLiteral("2026-01-31T080509Z-00000000");
    metadata.searchText = QStringLiteral("會議");
    metadata.glossaryTerms
        = {{countedUuid(7), QStringLiteral("Qt"), QString(), LumaphoneGlossaryTermMode::preserve},
            {countedUuid(8), QStringLiteral("bus"), QStringLiteral("匯流排"),
                LumaphoneGlossaryTermMode::translate}};
    document.lines = {{countedUuid(1), QStringLiteral("Hello"), QStringLiteral("你好"),
                          AppleSystemSpeechLanguage::english, metadata.createdAt, true},
        {countedUuid(2), QStringLiteral("Bye"), QString(), AppleSystemSpeechLanguage::english,
            metadata.createdAt, false}};
    return document;
}

json::Value sampleJson()
{
    return toJson(sample());
}

} // namespace

class TranscriptDocumentTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void metadataIsWrittenToTheByte();
    void linesAreWrittenToTheByte();
    void aDocumentComesBackAsItWas();
    void onlySomeKeysMayBeMissing_data();
    void onlySomeKeysMayBeMissing();
    void unknownValuesAreRefused_data();
    void unknownValuesAreRefused();
    void aFolderNameLeadsNowhereElse_data();
    void aFolderNameLeadsNowhereElse();
    void theTexts();
    void theTextsOfAnEmptyDocument();
    void markdown();
    void markdownWithoutTheOptionalParts();
    void theLanguageNameIsThatOfTheDetectedLanguage();
    void percentSignsInTextsAreTexts();
};

void TranscriptDocumentTest::initTestCase()
{
    qputenv("TZ", "Asia/Taipei");
}

void TranscriptDocumentTest::metadataIsWrittenToTheByte()
{
    QCOMPARE(json::pretty(toJson(sample().metadata)), QByteArray(R"({
  "createdAt": "2026-01-31T08:05:09Z",
  "detectedLanguage": "english",
  "folderName": "2026-01-31T080509Z-00000000",
  "glossaryTerms": [
    {
      "id": "00000000-0000-0000-0000-000000000007",
      "mode": "preserve",
      "source": "Qt",
      "target": ""
    },
    {
      "id": "00000000-0000-0000-0000-000000000008",
      "mode": "translate",
      "source": "bus",
      "target": "匯流排"
    }
  ],
  "id": "00000000-0000-0000-0000-0000000000AB",
  "lineCount": 2,
  "note": "重要",
  "processingMode": "appleMode",
  "providerName": "Apple Translation",
  "searchText": "會議",
  "sourceLanguage": "automatic",
  "startedAt": "2026-01-31T07:00:00Z",
  "targetLanguage": "zh-TW",
  "title": "會議"
})"));
}

void TranscriptDocumentTest::linesAreWrittenToTheByte()
{
    QCOMPARE(json::pretty(sampleJson()["lines"][0]), QByteArray(R"({
  "createdAt": "2026-01-31T08:05:09Z",
  "id": "00000000-0000-0000-0000-000000000001",
  "isFinal": true,
  "sourceLanguage": "english",
  "sourceText": "Hello",
  "translatedText": "你好"
})"));
}

void TranscriptDocumentTest::aDocumentComesBackAsItWas()
{
    TranscriptDocument document = sample();
    document.metadata.endedAt = document.metadata.createdAt.addSecs(3);
    document.metadata.processingMode = LumaphoneProcessingMode::customAPI;
    document.metadata.title
        = QStringLiteral("\"引號\" \\ / 😀 \t\n").append(QChar(0)).append(QStringLiteral("e\u0301"));
    QVERIFY(transcriptDocumentFromJson(json::parse(json::pretty(toJson(document)))) == document);
    QVERIFY(transcriptDocumentFromJson(toJson(TranscriptDocument {document.metadata, {}})).lines.isEmpty());
}

void TranscriptDocumentTest::onlySomeKeysMayBeMissing_data()
{
    QTest::addColumn<QString>("part");
    QTest::addColumn<QString>("key");
    QTest::addColumn<bool>("isOptional");
    for (const char *key : {"startedAt", "endedAt", "detectedLanguage", "glossaryTerms"}) {
        QTest::newRow(key) << QStringLiteral("metadata") << QString::fromLatin1(key) << true;
    }
    for (const char *key : {"id", "title", "note", "createdAt", "sourceLanguage", "targetLanguage",
             "processingMode", "providerName", "lineCount", "folderName", "searchText"}) {
        QTest::newRow(key) << QStringLiteral("metadata") << QString::fromLatin1(key) << false;
    }
    for (const char *key : {"id", "sourceText", "translatedText", "sourceLanguage", "createdAt", "isFinal"}) {
        QTest::addRow("line's %s", key) << QStringLiteral("lines") << QString::fromLatin1(key) << false;
    }
}

void TranscriptDocumentTest::onlySomeKeysMayBeMissing()
{
    QFETCH(const QString, part);
    QFETCH(const QString, key);
    QFETCH(const bool, isOptional);
    json::Value missing = sampleJson();
    json::Value null = missing;
    const auto in = [&](json::Value &value) -> json::Value & {
        return part == QLatin1String("metadata") ? value["metadata"] : value["lines"][0];
    };
    in(missing).erase(key.toStdString());
    in(null)[key.toStdString()] = nullptr;
    for (const json::Value &value : {missing, null}) {
        const auto error = thrownBy<json::DecodingError>([&] { transcriptDocumentFromJson(value); });
        QCOMPARE(!error.has_value(), isOptional);
        if (error) {
            QVERIFY2(error->errorDescription().contains(key), error->what());
        }
    }
}

void TranscriptDocumentTest::unknownValuesAreRefused_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    QTest::newRow("language") << QStringLiteral("sourceLanguage") << QStringLiteral("\"English\"");
    QTest::newRow("detected language") << QStringLiteral("detectedLanguage") << QStringLiteral("\"\"");
    QTest::newRow("mode") << QStringLiteral("processingMode") << QStringLiteral("\"cloud\"");
    QTest::newRow("date with a fraction")
        << QStringLiteral("createdAt") << QStringLiteral("\"2026-01-31T08:05:09.5Z\"");
    QTest::newRow("identity") << QStringLiteral("id") << QStringLiteral("\"1\"");
    QTest::newRow("number as text") << QStringLiteral("lineCount") << QStringLiteral("\"2\"");
    QTest::newRow("fraction of a line") << QStringLiteral("lineCount") << QStringLiteral("2.5");
    QTest::newRow("terms") << QStringLiteral("glossaryTerms") << QStringLiteral("{}");
    QTest::newRow("a term's mode") << QStringLiteral("glossaryTerms")
                                   << QStringLiteral(
                                          R"([{"id":"00000000-0000-0000-0000-000000000007","source":"a",)"
                                          R"("target":"b","mode":"keep"}])");
}

void TranscriptDocumentTest::unknownValuesAreRefused()
{
    QFETCH(const QString, key);
    QFETCH(const QString, value);
    json::Value document = sampleJson();
    document["metadata"][key.toStdString()] = json::parse(value.toUtf8());
    QVERIFY(thrownBy<json::DecodingError>([&] { transcriptDocumentFromJson(document); }));
}

void TranscriptDocumentTest::aFolderNameLeadsNowhereElse_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isAllowed");
    QTest::newRow("plain") << QStringLiteral("2026 字幕") << true;
    QTest::newRow("hidden") << QStringLiteral(".x") << true;
    QTest::newRow("empty: all sessions") << QString() << false;
    QTest::newRow("itself") << QStringLiteral(".") << false;
    QTest::newRow("the folder above") << QStringLiteral("..") << false;
    QTest::newRow("a path") << QStringLiteral("../x") << false;
    QTest::newRow("absolute") << QStringLiteral("/home") << false;
    QTest::newRow("cut off by a zero") << QString(QStringLiteral("..") + QChar(0)) << false;
}

void TranscriptDocumentTest::aFolderNameLeadsNowhereElse()
{
    QFETCH(const QString, name);
    QFETCH(const bool, isAllowed);
    json::Value document = sampleJson();
    document["metadata"]["folderName"] = json::fromText(name);
    QCOMPARE(!thrownBy<json::DecodingError>([&] { transcriptDocumentFromJson(document); }), isAllowed);
}

void TranscriptDocumentTest::theTexts()
{
    const TranscriptDocument document = sample();
    QCOMPARE(document.sourceText(), QStringLiteral("Hello\n\nBye"));
    QCOMPARE(document.translationText(), QStringLiteral("你好\n\n"));
    QCOMPARE(document.bilingualText(),
        QStringLiteral("原文：\nHello\n\n台灣繁中：\n你好\n\n---\n\n原文：\nBye\n\n台灣繁中：\n"));
    QCOMPARE(document.searchText(), QStringLiteral("會議\n重要\nHello\n你好\nBye\n\nQt\n\nbus\n匯流排"));
}

void TranscriptDocumentTest::theTextsOfAnEmptyDocument()
{
    const TranscriptDocument document;
    QCOMPARE(document.sourceText(), QString());
    QCOMPARE(document.translationText(), QString());
    QCOMPARE(document.bilingualText(), QString());
    QCOMPARE(document.searchText(), QStringLiteral("\n"));
}

void TranscriptDocumentTest::markdown()
{
    TranscriptDocument document = sample();
    document.metadata.endedAt = document.metadata.startedAt->addSecs(3600);
    QCOMPARE(document.markdownText(QLocale(QLocale::English, QLocale::UnitedStates)), QStringLiteral(R"(# 會議

- 建立時間：1/31/26 4:05 PM
- Session：1/31/26 3:00 PM - 1/31/26 4:00 PM
- 語言：英文 -> 台灣繁中
- Provider：Apple Translation
- 段落數：2

## 備註

重要

## Glossary

- `Qt` → `` (preserve)
- `bus` → `匯流排` (translate)

## Transcript

## 1

**原文**

Hello

**譯文**

你好

## 2

**原文**

Bye

**譯文**

)"));
}

void TranscriptDocumentTest::markdownWithoutTheOptionalParts()
{
    TranscriptDocument document = sample();
    document.metadata.note.clear();
    document.metadata.glossaryTerms.clear();
    document.metadata.startedAt.reset();
    document.lines.clear();
    QCOMPARE(document.markdownText(QLocale(QLocale::German, QLocale::Germany)), QStringLiteral(R"(# 會議

- 建立時間：31.01.26 16:05
- Session：未記錄 - 未記錄
- 語言：英文 -> 台灣繁中
- Provider：Apple Translation
- 段落數：0

## Transcript

)"));
}

void TranscriptDocumentTest::theLanguageNameIsThatOfTheDetectedLanguage()
{
    TranscriptRecordMetadata metadata;
    QCOMPARE(metadata.languageName(), QStringLiteral("自動辨識"));
    metadata.sourceLanguage = AppleSystemSpeechLanguage::korean;
    QCOMPARE(metadata.languageName(), QStringLiteral("韓文"));
    metadata.detectedLanguage = AppleSystemSpeechLanguage::mandarin;
    QCOMPARE(metadata.languageName(), QStringLiteral("中文"));
}

void TranscriptDocumentTest::percentSignsInTextsAreTexts()
{
    TranscriptDocument document = sample();
    document.metadata.glossaryTerms = {
        {countedUuid(7), QStringLiteral("%2"), QStringLiteral("%3"), LumaphoneGlossaryTermMode::translate}};
    document.lines.first().sourceText = QStringLiteral("100%1");
    const QString page = document.markdownText(QLocale::c());
    QVERIFY2(page.contains(QStringLiteral("- `%2` → `%3` (translate)")), qPrintable(page));
    QVERIFY2(page.contains(QStringLiteral("\n\n100%1\n\n")), qPrintable(page));
}

LUMAPHONE_TEST(TranscriptDocumentTest)

} // namespace transcriptdocumenttest

#include "TranscriptDocumentTest.moc"
