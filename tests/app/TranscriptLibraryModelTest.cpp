#include "app/library/TranscriptLibraryModel.h"

#include "app/library/TranscriptLinesModel.h"
#include "support/CountedUuids.h"
#include "support/program/TestProgram.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>
#include <QTimeZone>

namespace transcriptlibrarymodeltest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

TranscriptRecordMetadata record(uint number, const QString &title = {})
{
    TranscriptRecordMetadata record;
    record.id = countedUuid(number);
    record.title = title.isEmpty() ? QString::number(number) : title;
    record.createdAt = QDateTime(QDate(2026, 3, 1), QTime(9, 30), QTimeZone::utc()).addSecs(-int(number));
    return record;
}

QList<TranscriptRecordMetadata> records(const QString &numbers)
{
    QList<TranscriptRecordMetadata> list;
    for (const QString &number : numbers.split(' ', Qt::SkipEmptyParts)) {
        list.append(record(number.toUInt()));
    }
    return list;
}

/// A model watched by the toolkit's own tester, with notes of what it announces.
struct Watched
{
    TranscriptLibraryModel model {QLocale::c()};
    QAbstractItemModelTester tester {&model, QAbstractItemModelTester::FailureReportingMode::QtTest};
    QStringList announced;

    Watched()
    {
        QObject::connect(&model, &QAbstractItemModel::rowsInserted, &model,
            [this](const QModelIndex &, int first, int last) {
                announced << QString("+%1-%2").arg(first).arg(last);
            });
        QObject::connect(&model, &QAbstractItemModel::rowsRemoved, &model,
            [this](const QModelIndex &, int first, int last) {
                announced << QString("-%1-%2").arg(first).arg(last);
            });
        QObject::connect(&model, &QAbstractItemModel::dataChanged, &model,
            [this](const QModelIndex &first, const QModelIndex &last) {
                announced << QString("~%1-%2").arg(first.row()).arg(last.row());
            });
        QObject::connect(&model, &QAbstractItemModel::modelReset, &model, [this] { announced << "reset"; });
    }
    QString titles() const
    {
        QStringList titles;
        for (int row = 0; row < model.rowCount(); ++row) {
            titles << model.index(row).data(TranscriptLibraryModel::TitleRole).toString();
        }
        return titles.join(' ');
    }
};

} // namespace

class TranscriptLibraryModelTest : public QObject
{
    Q_OBJECT

private slots:
    void aNewListIsTakenOverRowByRow_data()
    {
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("to");
        QTest::addColumn<QString>("announced");
        QTest::newRow("the same") << "1 2 3"
                                  << "1 2 3"
                                  << "";
        QTest::newRow("first fill") << ""
                                    << "1 2 3"
                                    << "+0-2";
        QTest::newRow("emptied") << "1 2 3"
                                 << ""
                                 << "-0-2";
        QTest::newRow("a new session") << "2 3"
                                       << "1 2 3"
                                       << "+0-0";
        QTest::newRow("one deleted") << "1 2 3"
                                     << "1 3"
                                     << "-1-1";
        QTest::newRow("narrower search") << "1 2 3 4 5 6"
                                         << "2 5"
                                         << "-5-5 -2-3 -0-0";
        QTest::newRow("wider search") << "2 5"
                                      << "1 2 3 4 5 6"
                                      << "+0-0 +2-3 +5-5";
        QTest::newRow("another search") << "1 3 5"
                                        << "2 3 4"
                                        << "-2-2 -0-0 +0-0 +2-2";
        QTest::newRow("nothing in common") << "1 2"
                                           << "3 4"
                                           << "-0-1 +0-1";
        QTest::newRow("another order") << "1 2 3"
                                       << "3 1 2"
                                       << "-2-2 +0-0";
        QTest::newRow("reversed") << "1 2 3"
                                  << "3 2 1"
                                  << "-1-2 +0-1";
    }
    void aNewListIsTakenOverRowByRow()
    {
        QFETCH(QString, from);
        QFETCH(QString, to);
        Watched w;
        w.model.setRecords(records(from));
        w.announced.clear();
        QSignalSpy counts(&w.model, &TranscriptLibraryModel::countChanged);
        w.model.setRecords(records(to));
        QCOMPARE(w.titles(), to);
        QTEST(w.announced.join(' '), "announced");
        QCOMPARE(counts.count(), from.size() == to.size() ? 0 : 1);
    }

    void aListThatChangesEverywhereIsReplacedButForItsEnds()
    {
        Watched w;
        QString all;
        QString odd;
        for (int number = 1; number <= 401; ++number) {
            all += QString::number(number) + ' ';
            odd += number % 2 == 1 ? QString::number(number) + ' ' : QString();
        }
        w.model.setRecords(records(all));
        w.announced.clear();
        w.model.setRecords(records(odd));
        QCOMPARE(w.titles(), odd.trimmed());
        QCOMPARE(w.announced, QStringList({"-1-399", "+1-199"}));
        w.announced.clear();
        w.model.setRecords(records(all));
        QCOMPARE(w.titles(), all.trimmed());
        QCOMPARE(w.announced, QStringList({"-1-199", "+1-399"}));
        QVERIFY(w.model.rowOf(countedUuid(400)) == 399);
    }

    void aChangedRecordChangesItsRow()
    {
        Watched w;
        w.model.setRecords(records("1 2 3"));
        w.announced.clear();
        QList<TranscriptRecordMetadata> changed = records("1 2 3");
        changed[1].title = "新的標題";
        w.model.setRecords(changed);
        QCOMPARE(w.announced, QStringList("~1-1"));
        QCOMPARE(w.titles(), QString("1 新的標題 3"));
        // What no row shows is no change of a row.
        changed[2].note = "備註";
        w.model.setRecords(changed);
        QCOMPARE(w.announced.size(), 1);
        QCOMPARE(w.model.records()[2].note, QString("備註"));
    }

    void rowsKnowTheirRecord()
    {
        Watched w;
        w.model.setRecords({record(7, " \t"), record(8)});
        QCOMPARE(
            w.model.index(0).data(TranscriptLibraryModel::TitleRole).toString(), QString("未命名的字幕紀錄"));
        QCOMPARE(w.model.index(1).data(TranscriptLibraryModel::RecordIdRole).toString(),
            QString("00000000-0000-0000-0000-000000000008"));
        QVERIFY(w.model.index(1)
                    .data(TranscriptLibraryModel::SubtitleRole)
                    .toString()
                    .contains(" → 台灣繁中 · "));
        QCOMPARE(w.model.rowOf(countedUuid(8)), 1);
        QCOMPARE(w.model.rowOf(countedUuid(9)), -1);
        QCOMPARE(w.model.roleNames().value(TranscriptLibraryModel::SubtitleRole), QByteArray("subtitle"));
    }

    void tenThousandRecordsAreFilteredQuickly()
    {
        QList<TranscriptRecordMetadata> all;
        QList<TranscriptRecordMetadata> half;
        for (uint number = 1; number <= 10000; ++number) {
            all.append(record(number));
            if (number % 2 == 0) {
                half.append(all.last());
            }
        }
        TranscriptLibraryModel model(QLocale::c());
        model.setRecords(all);
        model.setRecords(half);
        QCOMPARE(model.count(), 5000);
        model.setRecords(all);
        QCOMPARE(model.count(), 10000);
        QCOMPARE(model.rowOf(countedUuid(10000)), 9999);
    }

    void linesAreEditedInPlace()
    {
        TranscriptLinesModel model;
        const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        SavedTranscriptLine line;
        line.id = countedUuid(1);
        line.sourceText = "a";
        line.translatedText = "甲";
        line.sourceLanguage = AppleSystemSpeechLanguage::japanese;
        model.setLines({line, line});
        QSignalSpy edits(&model, &TranscriptLinesModel::edited);
        QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
        const QModelIndex second = model.index(1);
        QVERIFY(model.setData(second, "乙", TranscriptLinesModel::TranslatedTextRole));
        QCOMPARE(model.lines()[1].translatedText, QString("乙"));
        QCOMPARE(model.lines()[0].translatedText, QString("甲"));
        QVERIFY(model.setData(second, "b", TranscriptLinesModel::SourceTextRole));
        QCOMPARE(second.data(TranscriptLinesModel::SourceTextRole).toString(), QString("b"));
        QCOMPARE(edits.count(), 2);
        // Setting what is there is no edit, and nothing else can be set.
        QVERIFY(model.setData(second, "b", TranscriptLinesModel::SourceTextRole));
        QVERIFY(!model.setData(second, 5, TranscriptLinesModel::NumberRole));
        QVERIFY(!model.setData(QModelIndex(), "c", TranscriptLinesModel::SourceTextRole));
        QCOMPARE(edits.count(), 2);
        QCOMPARE(changes.count(), 2);
        QCOMPARE(second.data(TranscriptLinesModel::NumberRole).toInt(), 2);
        QCOMPARE(second.data(TranscriptLinesModel::SourceLanguageRole).toString(), QString("japanese"));
        QVERIFY(model.flags(second).testFlag(Qt::ItemIsEditable));
    }
};

LUMAPHONE_TEST(TranscriptLibraryModelTest)

} // namespace transcriptlibrarymodeltest

#include "TranscriptLibraryModelTest.moc"
