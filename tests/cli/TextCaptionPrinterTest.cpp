#include "cli/TextCaptionPrinter.h"

#include "support/program/TestProgram.h"

#include <QTest>

namespace textcaptionprintertest {

using namespace lumaphone;
using namespace lumaphone::cli;

namespace {

LumaphoneCaptionLine line(
    int number, const QString &text, bool isFinal, const QString &translation = QString())
{
    LumaphoneCaptionLine result;
    result.id = QUuid(static_cast<uint>(number), 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    result.sourceText = text;
    result.translatedText = translation.isEmpty() ? pendingTranslationPlaceholder.toString() : translation;
    result.isFinal = isFinal;
    return result;
}

/// A printer with what it wrote; none for `columns` stands for a pipe.
struct Printed
{
    explicit Printed(std::optional<int> terminalColumns)
        : columns(terminalColumns)
    {
    }

    QString takeOutput() { return QString::fromUtf8(std::exchange(output, {})); }

    std::optional<int> columns;
    QByteArray output;
    QByteArray messages;
    TextCaptionPrinter printer {CommandStreams {[this](const QByteArray &bytes) { output += bytes; },
                                    [this](const QByteArray &bytes) {
                                        messages += bytes;
                                    }},
        [this] {
            return columns;
        }};
};

} // namespace

class TextCaptionPrinterTest : public QObject
{
    Q_OBJECT

private slots:
    void aPipeReceivesFinalLinesOnly()
    {
        Printed pipe(std::nullopt);
        pipe.printer.statusChanged("waiting");
        pipe.printer.lineChanged(line(1, "he", false), TranslationState::unwanted);
        pipe.printer.lineChanged(line(1, "hello", false), TranslationState::unwanted);
        QCOMPARE(pipe.takeOutput(), QString());
        pipe.printer.lineChanged(line(1, "hello world", true), TranslationState::unwanted);
        QCOMPARE(pipe.takeOutput(), QStringLiteral("hello world\n"));
        pipe.printer.finish();
        QCOMPARE(pipe.takeOutput(), QString());
        QCOMPARE(pipe.messages, QByteArray());
    }

    void aLineCorrectedAfterItWasFinalIsPrintedAgain()
    {
        Printed pipe(std::nullopt);
        pipe.printer.lineChanged(line(1, "hello word", true), TranslationState::unwanted);
        pipe.printer.lineChanged(line(1, "hello world", true), TranslationState::unwanted);
        QCOMPARE(pipe.takeOutput(), QStringLiteral("hello word\nhello world\n"));
    }

    void aLineGivenUpForANewerOneIsNotPrinted()
    {
        Printed pipe(std::nullopt);
        pipe.printer.lineChanged(line(1, "chemistry", false), TranslationState::unwanted);
        pipe.printer.lineChanged(line(2, "the mister", false), TranslationState::unwanted);
        pipe.printer.lineChanged(line(2, "the mister john", true), TranslationState::unwanted);
        pipe.printer.lineChanged(line(3, "open at the end", false), TranslationState::unwanted);
        pipe.printer.finish();
        QCOMPARE(pipe.takeOutput(), QStringLiteral("the mister john\n"));
    }

    void aLineWaitsForItsTranslationAndKeepsItsPlace()
    {
        Printed pipe(std::nullopt);
        pipe.printer.lineChanged(line(1, "one", true), TranslationState::pending);
        pipe.printer.lineChanged(line(2, "two", true, "二"), TranslationState::arrived);
        QCOMPARE(pipe.takeOutput(), QString());
        pipe.printer.lineChanged(line(1, "one", true, "一"), TranslationState::arrived);
        QCOMPARE(pipe.takeOutput(), QStringLiteral("one\n  一\ntwo\n  二\n"));
    }

    void aLineWhoseTranslationFailedIsPrintedWithoutOne()
    {
        Printed pipe(std::nullopt);
        pipe.printer.lineChanged(line(1, "one", true), TranslationState::failed);
        QCOMPARE(pipe.takeOutput(), QStringLiteral("one\n"));
    }

    void textThatIsItsOwnTranslationIsPrintedOnce()
    {
        Printed pipe(std::nullopt);
        pipe.printer.lineChanged(line(1, "你好", true, "你好"), TranslationState::arrived);
        QCOMPARE(pipe.takeOutput(), QStringLiteral("你好\n"));
    }

    void theEndShowsWhatWasHeldBack()
    {
        Printed pipe(std::nullopt);
        pipe.printer.lineChanged(line(1, "one", true), TranslationState::pending);
        pipe.printer.lineChanged(line(2, "two", true, "二"), TranslationState::arrived);
        pipe.printer.finish();
        QCOMPARE(pipe.takeOutput(), QStringLiteral("one\ntwo\n  二\n"));
    }

    void aTerminalShowsTheOpenLineInPlace()
    {
        Printed terminal(40);
        terminal.printer.lineChanged(line(1, "he", false), TranslationState::unwanted);
        QCOMPARE(terminal.takeOutput(), QStringLiteral("\x1b[2mhe\x1b[0m"));
        terminal.printer.lineChanged(line(1, "hello", false), TranslationState::unwanted);
        QCOMPARE(terminal.takeOutput(), QStringLiteral("\r\x1b[J\x1b[2mhello\x1b[0m"));
        terminal.printer.lineChanged(line(1, "hello world", true), TranslationState::unwanted);
        QCOMPARE(terminal.takeOutput(), QStringLiteral("\r\x1b[Jhello world\n"));
    }

    void aLongOpenLineShowsItsEndOnOneRow()
    {
        Printed terminal(8);
        terminal.printer.lineChanged(line(1, "a sentence too long", false), TranslationState::unwanted);
        QCOMPARE(terminal.takeOutput(), QStringLiteral("\x1b[2m…o long\x1b[0m"));
    }

    void severalRowsAreRemovedTogether()
    {
        Printed terminal(40);
        terminal.printer.lineChanged(line(1, "one", true), TranslationState::pending);
        terminal.printer.lineChanged(line(2, "two", false), TranslationState::pending);
        terminal.takeOutput();
        terminal.printer.lineChanged(line(1, "one", true, "一"), TranslationState::arrived);
        QCOMPARE(terminal.takeOutput(), QStringLiteral("\r\x1b[1A\x1b[Jone\n  一\n\x1b[2mtwo\x1b[0m"));
    }

    void anOpenLineShowsTheTranslationThatHasArrived()
    {
        Printed terminal(40);
        terminal.printer.lineChanged(line(1, "one", false, "一"), TranslationState::arrived);
        QCOMPARE(terminal.takeOutput(), QStringLiteral("\x1b[2mone\n  一\x1b[0m"));
    }

    void aStatusMakesWayForTheFirstLine()
    {
        Printed terminal(40);
        terminal.printer.statusChanged("waiting");
        QCOMPARE(terminal.takeOutput(), QStringLiteral("\x1b[2mwaiting\x1b[0m"));
        terminal.printer.lineChanged(line(1, "one", true), TranslationState::unwanted);
        QCOMPARE(terminal.takeOutput(), QStringLiteral("\r\x1b[Jone\n"));
    }

    void aFailureGoesToTheMessages()
    {
        Printed terminal(40);
        terminal.printer.statusChanged("waiting");
        terminal.takeOutput();
        terminal.printer.failed("the device is gone");
        QCOMPARE(terminal.takeOutput(), QStringLiteral("\r\x1b[J"));
        QCOMPARE(terminal.messages, QByteArray("the device is gone\n"));
    }

    void controlCharactersDoNotReachTheTerminal()
    {
        Printed pipe(std::nullopt);
        pipe.printer.lineChanged(line(1, "one\x1b[2Jtwo\nthree", true), TranslationState::unwanted);
        QCOMPARE(pipe.takeOutput(), QStringLiteral("one [2Jtwo three\n"));
    }
};

LUMAPHONE_TEST(TextCaptionPrinterTest)

} // namespace textcaptionprintertest

#include "TextCaptionPrinterTest.moc"
