#include "app/live/JoinedText.h"

#include "base/Text.h"
#include "support/CaptionLines.h"
#include "support/program/TestProgram.h"

#include <QTest>

#include <random>

namespace joinedtexttest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

LumaphoneCaptionLine line(const QString &source, const QString &translation)
{
    LumaphoneCaptionLine made = captionLine(1, source, true);
    made.translatedText = translation;
    return made;
}

QString joinedAnew(const QList<LumaphoneCaptionLine> &lines)
{
    QStringList paragraphs;
    for (const LumaphoneCaptionLine &each : lines) {
        paragraphs.append(text::trimmed(each.sourceText));
    }
    paragraphs.removeAll(QString());
    return paragraphs.join("\n\n");
}

} // namespace

class JoinedTextTest : public QObject
{
    Q_OBJECT

private slots:
    void whatIsBlankIsLeftOut()
    {
        const QList<LumaphoneCaptionLine> lines {
            line(" 一 \n", "one"), line("二", " \t\n"), line("　", " three "), line("四", "翻譯中...")};
        JoinedText source(&LumaphoneCaptionLine::sourceText);
        JoinedText translation(&LumaphoneCaptionLine::translatedText);
        QVERIFY(source.follow(lines, 0));
        QVERIFY(translation.follow(lines, 0));
        QCOMPARE(source.text(), "一\n\n二\n\n四");
        QCOMPARE(translation.text(), "one\n\nthree\n\n翻譯中...");
        QVERIFY(source.follow({}, 0));
        QCOMPARE(source.text(), "");
    }

    void aChangeOfTheOtherSideIsNone()
    {
        QList<LumaphoneCaptionLine> lines {line("一", "one"), line("二", "two")};
        JoinedText source(&LumaphoneCaptionLine::sourceText);
        source.follow(lines, 0);
        lines[1].translatedText = "second";
        QVERIFY(!source.follow(lines, 1));
        QCOMPARE(source.text(), "一\n\n二");
    }

    void whatChangesStepByStepReadsAsIfJoinedAnew()
    {
        std::mt19937 random(7);
        const auto below = [&random](qsizetype limit) {
            return qsizetype(random() % unsigned(limit));
        };
        const QStringList words {"", " ", "一", " 二\n", "three words here"};
        QList<LumaphoneCaptionLine> lines;
        JoinedText source(&LumaphoneCaptionLine::sourceText);
        for (int step = 0; step < 2000; ++step) {
            qsizetype first = lines.size();
            const qsizetype what = below(20);
            if (what == 0) {
                lines.clear();
                first = 0;
            } else if (what < 9 || lines.isEmpty()) {
                first = below(lines.size() + 1);
                lines.insert(first, line(words[below(words.size())], "x"));
            } else {
                first = below(lines.size());
                lines[first].sourceText = words[below(words.size())];
            }
            const QString former = source.text();
            const bool hasChanged = source.follow(lines, first);
            QCOMPARE(source.text(), joinedAnew(lines));
            QCOMPARE(hasChanged, source.text() != former);
        }
    }
};

LUMAPHONE_TEST(JoinedTextTest)

} // namespace joinedtexttest

#include "JoinedTextTest.moc"
