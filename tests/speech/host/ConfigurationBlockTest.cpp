#include "speech/host/ConfigurationBlock.h"

#include "support/program/TestProgram.h"

#include <QTest>

#include <algorithm>

namespace configurationblocktest {

using namespace lumaphone::host;

class ConfigurationBlockTest : public QObject
{
    Q_OBJECT

private slots:
    void whatIsNotSetIsZero()
    {
        const ConfigurationBlock block;
        const auto *const bytes = static_cast<const char *>(block.data());
        QVERIFY(std::all_of(bytes, bytes + 2048, [](char byte) { return byte == 0; }));
        QCOMPARE(textAt(block.data(), 64), std::string());
    }

    void valuesLieAtTheirOffsets()
    {
        ConfigurationBlock block;
        block.setInteger(0, 16000);
        block.setFloat(4, 0.5F);
        block.setText(96, "tokens.txt");
        for (int i = 0; i < 50; ++i) {
            block.setText(200 + 8 * static_cast<std::size_t>(i), std::to_string(i));
        }
        QCOMPARE(fieldAt<std::int32_t>(block.data(), 0), 16000);
        QCOMPARE(fieldAt<float>(block.data(), 4), 0.5F);
        QCOMPARE(textAt(block.data(), 96), std::string("tokens.txt"));
        QCOMPARE(textAt(block.data(), 200), std::string("0"));
        QCOMPARE(textAt(block.data(), 200 + 8 * 49), std::string("49"));
    }
};

LUMAPHONE_TEST(ConfigurationBlockTest)

} // namespace configurationblocktest

#include "ConfigurationBlockTest.moc"
