#include "session/CaptionLineList.h"

#include "support/CountedUuids.h"
#include "support/program/TestProgram.h"

#include <QTest>

namespace captionlinelisttest {

using namespace lumaphone;
using lumaphone::test::countedUuid;

namespace {

LumaphoneCaptionLine line(uint id, const QString &text)
{
    LumaphoneCaptionLine result;
    result.id = countedUuid(id);
    result.sourceText = text;
    return result;
}

class Recorder final : public CaptionLineListener
{
public:
    void captionLineInserted(qsizetype index) override { m_heard += QStringLiteral("+%1 ").arg(index); }
    void captionLineChanged(qsizetype index) override { m_heard += QStringLiteral("~%1 ").arg(index); }
    void captionLinesReset() override { m_heard += QStringLiteral("0 "); }
    QString take() { return std::exchange(m_heard, QString()).trimmed(); }

private:
    QString m_heard;
};

} // namespace

class CaptionLineListTest : public QObject
{
    Q_OBJECT

private slots:
    void theFirstLineWithAnIdentityIsFound()
    {
        CaptionLineList list;
        QCOMPARE(list.firstIndexOf(countedUuid(1)), std::nullopt);
        list.append(line(1, QStringLiteral("a")));
        list.append(line(2, QStringLiteral("b")));
        list.append(line(1, QStringLiteral("c")));
        QCOMPARE(list.firstIndexOf(countedUuid(1)), std::optional<qsizetype>(0));
        QCOMPARE(list.firstIndexOf(countedUuid(2)), std::optional<qsizetype>(1));
        QCOMPARE(list.firstIndexOf(countedUuid(3)), std::nullopt);
    }

    void aReplacedListIsFoundAnew()
    {
        CaptionLineList list;
        list.append(line(1, QStringLiteral("a")));
        list.reset(
            {line(2, QStringLiteral("b")), line(3, QStringLiteral("c")), line(2, QStringLiteral("d"))});
        QCOMPARE(list.firstIndexOf(countedUuid(1)), std::nullopt);
        QCOMPARE(list.firstIndexOf(countedUuid(2)), std::optional<qsizetype>(0));
        QCOMPARE(list.firstIndexOf(countedUuid(3)), std::optional<qsizetype>(1));
        list.reset({});
        QVERIFY(list.isEmpty());
        QCOMPARE(list.firstIndexOf(countedUuid(2)), std::nullopt);
    }

    void theNewestLineWithATextIsFound()
    {
        CaptionLineList list;
        list.append(line(1, QStringLiteral("が")));
        list.append(line(2, QStringLiteral("b")));
        list.append(line(3, QStringLiteral("か\u3099")));
        list.append(line(4, QStringLiteral("c")));
        QCOMPARE(list.newestIndexOf(QStringLiteral("が")), std::optional<qsizetype>(2));
        QCOMPARE(list.newestIndexOf(QStringLiteral("b")), std::optional<qsizetype>(1));
        QCOMPARE(list.newestIndexOf(QStringLiteral("か")), std::nullopt);
        list.replace(2, line(3, QStringLiteral("d")));
        QCOMPARE(list.newestIndexOf(QStringLiteral("が")), std::optional<qsizetype>(0));
    }

    void theListenerHearsEveryChange()
    {
        Recorder recorder;
        CaptionLineList list;
        list.setListener(&recorder);
        list.append(line(1, QStringLiteral("a")));
        list.append(line(2, QStringLiteral("b")));
        QCOMPARE(recorder.take(), QStringLiteral("+0 +1"));
        list.replace(0, line(1, QStringLiteral("c")));
        QCOMPARE(recorder.take(), QStringLiteral("~0"));
        list.reset({});
        QCOMPARE(recorder.take(), QStringLiteral("0"));
        list.setListener(nullptr);
        list.append(line(1, QStringLiteral("a")));
        QCOMPARE(recorder.take(), QString());
    }
};

LUMAPHONE_TEST(CaptionLineListTest)

} // namespace captionlinelisttest

#include "CaptionLineListTest.moc"
