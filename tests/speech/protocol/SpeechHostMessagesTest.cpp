#include "speech/protocol/SpeechHostMessages.h"

#include "support/program/TestProgram.h"

#include <QTest>

#include <random>

namespace speechhostmessagestest {

using namespace lumaphone;
using namespace lumaphone::host;

namespace {

std::vector<Request> requests()
{
    Configure plain;
    plain.network = {NetworkKind::senseVoice, {"/models/聲音.onnx"}, "/models/tokens.txt"};
    Configure full;
    full.runtimeFolder = "/usr/libexec";
    full.voiceDetector = "/vad.onnx";
    full.voiceThreshold = 400;
    full.network = {NetworkKind::streamingTransducer, {"encoder", "decoder", "joiner"}, "tokens"};
    full.volatileNetwork = Network {NetworkKind::streamingCtc, {"ctc"}, "tokens"};
    full.language = "ja";
    full.threads = 2;
    return {plain, full, Sound {}, Sound {1LL << 40, {0, -1, 32767, -32768}}, EndOfSound {}};
}

std::vector<Report> reports()
{
    return {Loading {LoadStage::voiceDetector}, Ready {"1.13.8"},
        Decoded {16000, 48000, 20000, true, false, true, 120, "ja", "Speech", "今日はいい天気ですね"},
        Decoded {}, Settled {-1}, Closed {3, 5}, Finished {}, Failure {FailureKind::decoding, "too short"}};
}

} // namespace

class SpeechHostMessagesTest : public QObject
{
    Q_OBJECT

private slots:
    void requestsArriveAsTheyWereSent()
    {
        for (const Request &request : requests()) {
            QVERIFY(decodeRequest(encode(request)) == request);
        }
    }

    void reportsArriveAsTheyWereSent()
    {
        for (const Report &report : reports()) {
            QVERIFY(decodeReport(encode(report)) == report);
        }
    }

    void everyShorterMessageIsAnError()
    {
        for (const Report &report : reports()) {
            const Bytes whole = encode(report);
            for (std::size_t length = 0; length < whole.size(); ++length) {
                const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
                QVERIFY_THROWS_EXCEPTION(WireError, decodeReport(cut));
            }
        }
        for (const Request &request : requests()) {
            if (std::holds_alternative<Sound>(request)) {
                continue; // samples may be any number
            }
            const Bytes whole = encode(request);
            for (std::size_t length = 0; length < whole.size(); ++length) {
                const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
                QVERIFY_THROWS_EXCEPTION(WireError, decodeRequest(cut));
            }
        }
    }

    void aLongerMessageIsAnError()
    {
        for (const Report &report : reports()) {
            Bytes bytes = encode(report);
            bytes.push_back(0);
            QVERIFY_THROWS_EXCEPTION(WireError, decodeReport(bytes));
        }
    }

    void hostileMessagesAreErrors_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("unknown kind") << QByteArray("\x3f", 1);
        QTest::newRow("zero kind") << QByteArray("\0", 1);
        QTest::newRow("a request as a report") << QByteArray("\x03", 1);
        QTest::newRow("unknown stage") << QByteArray("\x40\x09", 2);
        QTest::newRow("text longer than the message") << QByteArray("\x41\xff\xff\xff\xff"
                                                                    "abc",
            8);
        QTest::newRow("unknown failure") << QByteArray("\x46\x2a\0\0\0\0", 6);
    }
    void hostileMessagesAreErrors()
    {
        QFETCH(QByteArray, content);
        const Bytes bytes(content.begin(), content.end());
        QVERIFY_THROWS_EXCEPTION(WireError, decodeReport(bytes));
    }

    void halfASampleIsAnError()
    {
        Bytes bytes = encode(Request {Sound {0, {1, 2}}});
        bytes.pop_back();
        QVERIFY_THROWS_EXCEPTION(WireError, decodeRequest(bytes));
    }

    void tooManyFilesAreAnError()
    {
        Configure configuration;
        configuration.network.files.assign(9, "file");
        QVERIFY_THROWS_EXCEPTION(WireError, decodeRequest(encode(Request {configuration})));
    }

    void randomBytesNeverDoMoreThanThrow()
    {
        std::mt19937 random(7);
        int understood = 0;
        for (int round = 0; round < 20000; ++round) {
            Bytes bytes(random() % 64);
            for (auto &byte : bytes) {
                byte = static_cast<std::uint8_t>(random());
            }
            if (!bytes.empty()) {
                bytes.front()
                    = static_cast<std::uint8_t>(round % 2 == 0 ? 1 + random() % 3 : 64 + random() % 7);
            }
            try {
                round % 2 == 0 ? static_cast<void>(decodeRequest(bytes))
                               : static_cast<void>(decodeReport(bytes));
                ++understood;
            } catch (const WireError &) {
            }
        }
        QVERIFY(understood > 0);
    }
};

LUMAPHONE_TEST(SpeechHostMessagesTest)

} // namespace speechhostmessagestest

#include "SpeechHostMessagesTest.moc"
