#include "speech/pocketsphinx/PocketSphinxModel.h"

#include "platform/SpeechFramework.h"
#include "speech/pocketsphinx/ModelCopy.h"
#include "support/Coroutines.h"
#include "support/program/TestProgram.h"

#include <QTest>

namespace pocketsphinxmodeltest {

using namespace lumaphone;
using namespace lumaphone::test;

class PocketSphinxModelTest : public QObject
{
    Q_OBJECT

    static QString errorOfValidating(const ModelCopy &copy)
    {
        const auto error = thrownBy<SpeechFrameworkError>([&] { PocketSphinxModel(copy.path()).validate(); });
        return error ? error->errorDescription() : QString();
    }

private slots:
    void theSystemsModelIsSound()
    {
        const ModelCopy copy;
        QVERIFY(PocketSphinxModel(copy.path()).isInstalled());
        QCOMPARE(errorOfValidating(copy), QString());
    }

    void aMissingFileIsNamed_data()
    {
        QTest::addColumn<QString>("file");
        for (const QString &file : ModelCopy::files()) {
            QTest::newRow(qPrintable(file)) << file;
        }
    }

    void aMissingFileIsNamed()
    {
        QFETCH(QString, file);
        const ModelCopy copy;
        copy.remove(file);
        QVERIFY(!PocketSphinxModel(copy.path()).isInstalled());
        QCOMPARE(errorOfValidating(copy),
            QStringLiteral("找不到語音辨識模型的檔案：%1/%2").arg(copy.path(), file));
    }

    void aCutOffFileIsNamed_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("permille");
        for (const char *file :
            {"en-us/feat.params", "en-us/noisedict", "en-us/mdef", "en-us/sendump", "cmudict-en-us.dict"}) {
            for (const int permille : {0, 1, 50, 300, 500, 900, 999}) {
                QTest::addRow("%s at %d permille", file, permille) << QString::fromLatin1(file) << permille;
            }
        }
    }

    void aCutOffFileIsNamed()
    {
        QFETCH(QString, file);
        QFETCH(int, permille);
        const ModelCopy copy;
        copy.truncate(file, copy.size(file) * permille / 1000);
        QCOMPARE(errorOfValidating(copy),
            QStringLiteral("語音辨識模型的檔案已損壞：%1/%2").arg(copy.path(), file));
    }

    void aFileCutOffByOneByteIsNamed_data() { aMissingFileIsNamed_data(); }

    void aFileCutOffByOneByteIsNamed()
    {
        QFETCH(QString, file);
        static const QStringList checkedByTheDecoder {QStringLiteral("en-us.lm.bin"),
            QStringLiteral("en-us/means"), QStringLiteral("en-us/variances"),
            QStringLiteral("en-us/transition_matrices")};
        const ModelCopy copy;
        copy.truncate(file, copy.size(file) - 1);
        QCOMPARE(errorOfValidating(copy).isEmpty(), checkedByTheDecoder.contains(file));
    }

    /// The decoder uses these numbers as indices without looking.
    void aDefinitionThatPointsBeyondItsTablesIsRefused_data()
    {
        QTest::addColumn<double>("where");
        QTest::newRow("in the tree") << 0.1;
        QTest::newRow("in the phones") << 0.7;
        QTest::newRow("in the sequences") << 0.97;
    }

    void aDefinitionThatPointsBeyondItsTablesIsRefused()
    {
        QFETCH(double, where);
        const ModelCopy copy;
        const QString file = QStringLiteral("en-us/mdef");
        copy.overwrite(file, qint64(double(copy.size(file)) * where), QByteArray(24, '\x7f'));
        QVERIFY(errorOfValidating(copy).contains(file));
    }

    void aCountBeyondTheFileIsRefused_data()
    {
        QTest::addColumn<int>("field");
        QTest::newRow("base phones") << 0;
        QTest::newRow("phones") << 1;
        QTest::newRow("states of a phone") << 2;
        QTest::newRow("sequences") << 6;
        QTest::newRow("tree nodes") << 8;
    }

    void aCountBeyondTheFileIsRefused()
    {
        QFETCH(int, field);
        const qint64 firstCount = 12 + 0x41c; // behind magic, version, length and description
        const ModelCopy copy;
        const QString file = QStringLiteral("en-us/mdef");
        copy.overwrite(file, firstCount + 4 * field, QByteArray("\xff\xff\xff\x7f", 4));
        QVERIFY(errorOfValidating(copy).contains(file));
    }
};

LUMAPHONE_TEST(PocketSphinxModelTest)

} // namespace pocketsphinxmodeltest

#include "PocketSphinxModelTest.moc"
