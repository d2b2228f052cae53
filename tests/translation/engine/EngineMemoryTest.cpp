#include "support/engine/GeneratedFolder.h"
#include "support/engine/SampleSentences.h"
#include "support/program/TestProgram.h"
#include "translation/engine/Translator.h"

#include <QTest>

#include <malloc.h>

namespace enginememorytest {

using namespace lumaphone;
using namespace lumaphone::engine;
using namespace lumaphone::engine::test;

class EngineMemoryTest : public QObject
{
    Q_OBJECT

private slots:
    void memoryDoesNotGrowWithTheNumberOfTranslations()
    {
        const GeneratedFolder folder;
        Translator translator(
            {std::make_shared<TranslationModel>(folder.smallModel())}, WrittenChinese::traditional);
        QStringList sentences;
        for (const std::string &sentence : sampleSentences()) {
            if (sentences.size() < 60)
                sentences.append(QString::fromStdString(sentence));
        }
        const auto translateAll = [&] {
            for (const QString &sentence : sentences)
                translator.translate(sentence);
            return mallinfo2().uordblks;
        };
        translateAll();
        const auto before = translateAll();
        auto after = before;
        for (int round = 0; round < 8; ++round)
            after = translateAll();
        // The allocator's own books move by a few blocks; 480 sentences of any kept state would not fit in
        // there.
        QVERIFY2(after < before + 4096, qPrintable(QString::number(qint64(after) - qint64(before))));
    }
};

LUMAPHONE_TEST(EngineMemoryTest)

} // namespace enginememorytest

#include "EngineMemoryTest.moc"
