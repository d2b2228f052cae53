#include "speech/protocol/FrameReader.h"

#include "support/program/TestProgram.h"

#include <QTest>

#include <random>

namespace framereadertest {

using namespace lumaphone;

namespace {

Bytes bytesOf(const char *text)
{
    const std::string_view view(text);
    return {view.begin(), view.end()};
}

Bytes header(std::uint32_t length)
{
    Bytes bytes;
    WireWriter(bytes).u32(length);
    return bytes;
}

} // namespace

class FrameReaderTest : public QObject
{
    Q_OBJECT

private slots:
    void nothingIsGivenBeforeAFrameIsComplete()
    {
        FrameReader reader;
        const Bytes frame = framed(bytesOf("hello"));
        for (std::size_t i = 0; i + 1 < frame.size(); ++i) {
            reader.append(std::span(frame).subspan(i, 1));
            QVERIFY(!reader.next());
        }
        reader.append(std::span(frame).last(1));
        QVERIFY(reader.next() == bytesOf("hello"));
        QVERIFY(!reader.next());
    }

    void framesComeInOrderHoweverTheBytesAreCut()
    {
        std::mt19937 random(1);
        for (int round = 0; round < 200; ++round) {
            std::vector<Bytes> contents;
            Bytes stream;
            for (int i = 0; i < 20; ++i) {
                Bytes content(1 + random() % 300);
                for (auto &byte : content) {
                    byte = static_cast<std::uint8_t>(random());
                }
                const Bytes frame = framed(content);
                stream.insert(stream.end(), frame.begin(), frame.end());
                contents.push_back(std::move(content));
            }
            FrameReader reader;
            std::vector<Bytes> received;
            std::span<const std::uint8_t> left = stream;
            while (!left.empty()) {
                const std::size_t count = std::min<std::size_t>(left.size(), random() % 700);
                reader.append(left.first(count));
                left = left.subspan(count);
                while (auto content = reader.next()) {
                    received.push_back(std::move(*content));
                }
            }
            QVERIFY(received == contents);
        }
    }

    void impossibleLengthsAreErrors_data()
    {
        QTest::addColumn<quint32>("length");
        QTest::newRow("empty") << quint32(0);
        QTest::newRow("one too long") << quint32(FrameReader::maximumContent + 1);
        QTest::newRow("all bits") << quint32(0xFFFFFFFF);
    }
    void impossibleLengthsAreErrors()
    {
        QFETCH(quint32, length);
        FrameReader reader;
        reader.append(header(length));
        QVERIFY_THROWS_EXCEPTION(WireError, reader.next());
    }

    void theLongestFrameIsAccepted()
    {
        FrameReader reader;
        const Bytes content(FrameReader::maximumContent, 7);
        reader.append(framed(content));
        QVERIFY(reader.next() == content);
    }
};

LUMAPHONE_TEST(FrameReaderTest)

} // namespace framereadertest

#include "FrameReaderTest.moc"
