#include "base/LocalizedError.h"

#include "support/program/TestProgram.h"

#include <QTest>

#include <stdexcept>

namespace localizederrortest {

using namespace lumaphone;

class LocalizedErrorTest : public QObject
{
    Q_OBJECT

private slots:
    void theTextOfAnErrorIsItsDescription()
    {
        const PlatformError error(QStringLiteral("磁碟已滿"));
        QCOMPARE(localizedDescription(error), QStringLiteral("磁碟已滿"));
        QCOMPARE(QString::fromUtf8(error.what()), QStringLiteral("磁碟已滿"));
    }

    void theTextOfAnotherExceptionIsItsWhat()
    {
        QCOMPARE(localizedDescription(std::runtime_error("逾時")), QStringLiteral("逾時"));
    }

    void capturedExceptionsHaveTextsToo()
    {
        QCOMPARE(localizedDescription(std::make_exception_ptr(LocalizedError(QStringLiteral("甲")))),
            QStringLiteral("甲"));
        QCOMPARE(localizedDescription(std::make_exception_ptr(std::runtime_error("b"))), QStringLiteral("b"));
        QVERIFY(!localizedDescription(std::make_exception_ptr(1)).isEmpty());
    }
};

LUMAPHONE_TEST(LocalizedErrorTest)

} // namespace localizederrortest

#include "LocalizedErrorTest.moc"
