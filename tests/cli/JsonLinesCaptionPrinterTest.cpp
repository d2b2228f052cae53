#include "cli/JsonLinesCaptionPrinter.h"

#include "base/Record.h"
#include "support/program/TestProgram.h"

#include <QTest>

namespace jsonlinescaptionprintertest {

using namespace lumaphone;
using namespace lumaphone::cli;

class JsonLinesCaptionPrinterTest : public QObject
{
    Q_OBJECT

private slots:
    void aLineIsOneObjectInTheOrderOfItsMembers()
    {
        QByteArray output;
        JsonLinesCaptionPrinter printer({[&output](const QByteArray &bytes) { output += bytes; }, {}});
        LumaphoneCaptionLine line;
        line.id = QUuid("{0aef1b2c-0000-4000-8000-000000000001}");
        line.sourceText = QStringLiteral("say \"hi\"\n你好");
        line.sourceLanguage = AppleSystemSpeechLanguage::english;
        line.translatedText = pendingTranslationPlaceholder.toString();
        line.createdAt = *dateFromIso8601("2026-01-31T08:00:00Z");
        line.isFinal = true;
        line.revision = 3;
        printer.lineChanged(line, TranslationState::unwanted);
        QCOMPARE(QString::fromUtf8(output),
            QStringLiteral("{\"event\":\"line\",\"id\":\"0AEF1B2C-0000-4000-8000-000000000001\","
                           "\"sourceText\":\"say \\\"hi\\\"\\n你好\",\"sourceLanguage\":\"english\","
                           "\"translatedText\":\"翻譯中...\",\"createdAt\":\"2026-01-31T08:00:00Z\","
                           "\"isFinal\":true,\"revision\":3}\n"));
    }

    void statusAndFailureAreTold()
    {
        QByteArray output;
        QByteArray messages;
        JsonLinesCaptionPrinter printer({[&output](const QByteArray &bytes) { output += bytes; },
            [&messages](const QByteArray &bytes) {
                messages += bytes;
            }});
        printer.statusChanged("waiting");
        printer.failed("gone");
        printer.finish();
        QCOMPARE(output,
            QByteArray("{\"event\":\"status\",\"status\":\"waiting\",\"isFailure\":false}\n"
                       "{\"event\":\"status\",\"status\":\"gone\",\"isFailure\":true}\n"));
        QCOMPARE(messages, QByteArray("gone\n"));
    }
};

LUMAPHONE_TEST(JsonLinesCaptionPrinterTest)

} // namespace jsonlinescaptionprintertest

#include "JsonLinesCaptionPrinterTest.moc"
