#include "app/library/TranscriptTexts.h"

#include "base/Json.h"
#include "storage/TranscriptExport.h"
#include "support/CountedUuids.h"

#include <QTest>
#include <QTimeZone>

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

TranscriptRecordMetadata record()
{
    TranscriptRecordMetadata record;
    record.id = countedUuid(1);
    record.title = "標題";
    record.createdAt = QDateTime(QDate(2026, 3, 1), QTime(9, 30), QTimeZone::utc());
    record.sourceLanguage = AppleSystemSpeechLanguage::automatic;
    record.providerName = "Apple Translation";
    record.lineCount = 12;
    return record;
}

} // namespace

class TranscriptTextsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qputenv("TZ", "UTC"); }

    void theSubtitleNamesDateLanguagesProviderAndLength_data()
    {
        using Language = AppleSystemSpeechLanguage;
        QTest::addColumn<Language>("chosen");
        QTest::addColumn<Language>("detected");
        QTest::addColumn<QString>("locale");
        QTest::addColumn<qlonglong>("lineCount");
        QTest::addColumn<QString>("subtitle");
        const auto none = Language::automatic;
        QTest::newRow("chosen") << Language::korean << none << "en_US" << 12LL
                                << "3/1/26 9:30 AM · 韓文 → 台灣繁中 · Apple Translation · 12 段";
        QTest::newRow("detected wins") << Language::automatic << Language::japanese << "en_US" << 1LL
                                       << "3/1/26 9:30 AM · 日文 → 台灣繁中 · Apple Translation · 1 段";
        QTest::newRow("nothing detected")
            << Language::automatic << none << "en_US" << 0LL
            << "3/1/26 9:30 AM · 自動辨識 → 台灣繁中 · Apple Translation · 0 段";
        QTest::newRow("Taiwan's dates")
            << Language::mandarin << none << "zh_TW" << 1234LL
            << "2026/3/1 上午9:30 · 中文 → 台灣繁中 · Apple Translation · 1234 段";
    }
    void theSubtitleNamesDateLanguagesProviderAndLength()
    {
        QFETCH(AppleSystemSpeechLanguage, chosen);
        QFETCH(AppleSystemSpeechLanguage, detected);
        QFETCH(QString, locale);
        QFETCH(qlonglong, lineCount);
        TranscriptRecordMetadata shown = record();
        shown.sourceLanguage = chosen;
        if (detected != AppleSystemSpeechLanguage::automatic) {
            shown.detectedLanguage = detected;
        }
        shown.lineCount = lineCount;
        // Some versions of the locale data part time and half of the day by a narrow blank.
        QTEST(metadataSubtitle(shown, QLocale(locale)).replace(QChar(0x202F), ' '), "subtitle");
    }

    void aProviderMayCarryPlaceholders()
    {
        TranscriptRecordMetadata shown = record();
        shown.providerName = "自定義 API：%4";
        QVERIFY(metadataSubtitle(shown, QLocale::c()).endsWith("自定義 API：%4 · 12 段"));
    }

    void aFileNameHasNoForbiddenCharacters_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("name");
        QTest::newRow("plain") << "週會 2026"
                               << "週會 2026";
        QTest::newRow("slash and colon") << "a/b:c"
                                         << "a-b-c";
        QTest::newRow("all of them") << "a/b\\c:d?e%f*g|h\"i<j>k"
                                     << "a-b-c-d-e-f-g-h-i-j-k";
        QTest::newRow("neighbours") << "a//b"
                                    << "a--b";
        QTest::newRow("at the ends") << "/a:"
                                     << "-a-";
        QTest::newRow("trimmed after splitting") << " \n a/ \t"
                                                 << "a-";
        QTest::newRow("blanks") << " \t\n "
                                << "Lumaphone 字幕紀錄";
        QTest::newRow("empty") << ""
                               << "Lumaphone 字幕紀錄";
        QTest::newRow("only separators") << "/"
                                         << "-";
    }
    void aFileNameHasNoForbiddenCharacters()
    {
        QFETCH(QString, title);
        QTEST(safeFilename(title), "name");
    }

    void everyFormatWritesTheDocument_data()
    {
        QTest::addColumn<TranscriptExport>("format");
        QTest::addColumn<QString>("extension");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("beginning");
        const auto row = [](TranscriptExport format, const char *extension, const char *name,
                             const char *beginning) {
            QTest::newRow(extension) << format << QString(extension) << QString(name) << QString(beginning);
        };
        row(TranscriptExport::markdown, "md", "Markdown", "# 標題\n\n- 建立時間：");
        row(TranscriptExport::plainText, "txt", "雙語純文字", "原文：\nHello\n\n台灣繁中：\n你好");
        row(TranscriptExport::subRip, "srt", "SRT 字幕", "1\n00:00:00,000 --> ");
        row(TranscriptExport::webVtt, "vtt", "WebVTT 字幕", "WEBVTT\n");
        row(TranscriptExport::json, "json", "JSON", "{\n  \"lines\": [\n");
    }
    void everyFormatWritesTheDocument()
    {
        QFETCH(TranscriptExport, format);
        QFETCH(QString, beginning);
        TranscriptDocument document;
        document.metadata = record();
        document.lines = {{countedUuid(2), "Hello", "你好", AppleSystemSpeechLanguage::english,
            document.metadata.createdAt, true}};
        const QString text = QString::fromUtf8(exported(document, format, QLocale(QLocale::English)));
        QVERIFY2(text.startsWith(beginning), qPrintable(text));
        QVERIFY(text.contains("Hello") && text.contains("你好"));
        QTEST(rawValue(format), "extension");
        QTEST(title(format), "name");
        QCOMPARE(transcriptExport(rawValue(format)), std::optional(format));
        QVERIFY(!transcriptExport(rawValue(format).toUpper()));
    }

    void anExportedDocumentReadsBack()
    {
        TranscriptDocument document;
        document.metadata = record();
        document.metadata.folderName = "x";
        document.metadata.targetLanguage = "zh-TW";
        const QByteArray bytes = exported(document, TranscriptExport::json, QLocale::c());
        QCOMPARE(transcriptDocumentFromJson(json::parse(bytes)), document);
    }
};

QTEST_GUILESS_MAIN(TranscriptTextsTest)
#include "TranscriptTextsTest.moc"
