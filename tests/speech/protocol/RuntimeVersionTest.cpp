#include "speech/protocol/RuntimeVersion.h"

#include "support/program/TestProgram.h"

#include <QTest>

namespace runtimeversiontest {

using namespace lumaphone::host;

class RuntimeVersionTest : public QObject
{
    Q_OBJECT

private slots:
    void versionsAreReadAndCompared_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("isVersion");
        QTest::addColumn<bool>("isNewEnough");
        QTest::newRow("the one we fetch") << QByteArray("1.13.8") << true << true;
        QTest::newRow("the oldest") << QByteArray("1.12.35") << true << true;
        QTest::newRow("one before") << QByteArray("1.12.34") << true << false;
        QTest::newRow("compared as numbers") << QByteArray("1.9.99") << true << false;
        QTest::newRow("far in the future") << QByteArray("2.0.0") << true << true;
        QTest::newRow("empty") << QByteArray() << false << false;
        QTest::newRow("two numbers") << QByteArray("1.13") << false << false;
        QTest::newRow("four numbers") << QByteArray("1.13.8.1") << false << false;
        QTest::newRow("letters") << QByteArray("1.13.8rc") << false << false;
        QTest::newRow("negative") << QByteArray("1.-13.8") << false << false;
        QTest::newRow("out of range") << QByteArray("1.13.99999999999") << false << false;
        QTest::newRow("a full stop too many") << QByteArray("1..8") << false << false;
    }
    void versionsAreReadAndCompared()
    {
        QFETCH(QByteArray, text);
        QFETCH(bool, isVersion);
        QFETCH(bool, isNewEnough);
        const auto version = parseRuntimeVersion(text.toStdString());
        QCOMPARE(version.has_value(), isVersion);
        QCOMPARE(version && *version >= oldestRuntime, isNewEnough);
    }
};

LUMAPHONE_TEST(RuntimeVersionTest)

} // namespace runtimeversiontest

#include "RuntimeVersionTest.moc"
