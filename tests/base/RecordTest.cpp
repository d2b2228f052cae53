#include "base/Record.h"

#include "support/program/TestProgram.h"

#include <QTest>
#include <QTimeZone>

namespace recordtest {

using namespace lumaphone;

class RecordTest : public QObject
{
    Q_OBJECT

private slots:
    void identitiesAreWrittenInUpperCase()
    {
        QCOMPARE(uuidText(QUuid::fromString(QStringLiteral("{0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8f9}"))),
            QStringLiteral("0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9"));
    }

    void identitiesAreReadInEitherCase_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("isValid");
        QTest::newRow("upper") << "0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9" << true;
        QTest::newRow("lower") << "0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8f9" << true;
        QTest::newRow("mixed") << "0a1B2c3d-4E5f-6071-8293-A4b5c6d7e8F9" << true;
        QTest::newRow("empty") << "" << false;
        QTest::newRow("in braces") << "{0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9}" << false;
        QTest::newRow("without dashes") << "0A1B2C3D4E5F60718293A4B5C6D7E8F9" << false;
        QTest::newRow("one digit missing") << "0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F" << false;
        QTest::newRow("one digit more") << "0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F90" << false;
        QTest::newRow("no hexadecimal digit") << "GA1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9" << false;
        QTest::newRow("line break at the end") << "0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9\n" << false;
        QTest::newRow("full-width digit") << QStringLiteral("０A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9") << false;
    }
    void identitiesAreReadInEitherCase()
    {
        QFETCH(QString, text);
        QFETCH(bool, isValid);
        const auto uuid = uuidFromText(text);
        QCOMPARE(uuid.has_value(), isValid);
        if (isValid) {
            QCOMPARE(uuidText(*uuid), text.toUpper());
        }
    }

    void datesAreWrittenInWholeSecondsAndUtc()
    {
        const QDateTime date(QDate(2026, 1, 31), QTime(8, 5, 9, 999), QTimeZone::utc());
        QCOMPARE(iso8601Text(date), QStringLiteral("2026-01-31T08:05:09Z"));
        QCOMPARE(iso8601Text(date.toOffsetFromUtc(8 * 3600)), QStringLiteral("2026-01-31T08:05:09Z"));
    }

    void datesAreRead_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("utc");
        const QString none;
        QTest::newRow("UTC") << "2026-01-31T08:05:09Z"
                             << "2026-01-31T08:05:09Z";
        QTest::newRow("east") << "2026-01-31T08:05:09+08:00"
                              << "2026-01-31T00:05:09Z";
        QTest::newRow("west, another day") << "2026-01-31T20:05:09-05:30"
                                           << "2026-02-01T01:35:09Z";
        QTest::newRow("offset without colon") << "2026-01-31T08:05:09+0800"
                                              << "2026-01-31T00:05:09Z";
        QTest::newRow("offset nought") << "2026-01-31T08:05:09-00:00"
                                       << "2026-01-31T08:05:09Z";
        QTest::newRow("leap day") << "2024-02-29T00:00:00Z"
                                  << "2024-02-29T00:00:00Z";
        QTest::newRow("no leap year") << "2026-02-29T00:00:00Z" << none;
        QTest::newRow("fraction") << "2026-01-31T08:05:09.5Z" << none;
        QTest::newRow("no zone") << "2026-01-31T08:05:09" << none;
        QTest::newRow("no time") << "2026-01-31" << none;
        QTest::newRow("blank for T") << "2026-01-31 08:05:09Z" << none;
        QTest::newRow("lower-case z") << "2026-01-31T08:05:09z" << none;
        QTest::newRow("no seconds") << "2026-01-31T08:05Z" << none;
        QTest::newRow("month 13") << "2026-13-01T00:00:00Z" << none;
        QTest::newRow("hour 24") << "2026-01-31T24:00:00Z" << none;
        QTest::newRow("minute 60") << "2026-01-31T08:60:00Z" << none;
        QTest::newRow("second 60") << "2026-01-31T08:05:60Z" << none;
        QTest::newRow("offset of 24 hours") << "2026-01-31T08:05:09+24:00" << none;
        QTest::newRow("offset of 60 minutes") << "2026-01-31T08:05:09+01:60" << none;
        QTest::newRow("blank at the end") << "2026-01-31T08:05:09Z " << none;
        QTest::newRow("the last second") << "9999-12-31T23:59:59Z"
                                         << "9999-12-31T23:59:59Z";
        QTest::newRow("a second after the last") << "9999-12-31T23:59:59-00:01" << none;
        QTest::newRow("the first second") << "0001-01-01T00:00:00Z"
                                          << "0001-01-01T00:00:00Z";
        QTest::newRow("before the first second") << "0001-01-01T00:00:00+00:01" << none;
        QTest::newRow("empty") << "" << none;
    }
    void datesAreRead()
    {
        QFETCH(QString, text);
        const auto date = dateFromIso8601(text);
        QTEST(date ? iso8601Text(*date) : QString(), "utc");
    }
};

LUMAPHONE_TEST(RecordTest)

} // namespace recordtest

#include "RecordTest.moc"
