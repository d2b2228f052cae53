#include "app/live/JoinedText.h"

#include "base/Text.h"
#include "support/CaptionLines.h"
#include "support/program/TestProgram.h"

#include <QSignalSpy>
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
        source.follow(lines, 0);
        translation.follow(lines, 0);
        QCOMPARE(source.text(), "一\n\n二\n\n四");
        QCOMPARE(translation.text(), "one\n\nthree\n\n翻譯中...");
        source.follow({}, 0);
        QCOMPARE(source.text(), "");
    }

    void whetherThereIsTextIsToldWhenItChanges()
    {
        JoinedText source(&LumaphoneCaptionLine::sourceText);
        const QSignalSpy told(&source, &JoinedText::isEmptyChanged);
        QVERIFY(source.isEmpty());
        source.follow({line(" ", "one")}, 0);
        QCOMPARE(told.size(), 0);
        source.follow({line(" ", "one"), line("二", "two")}, 1);
        QCOMPARE(told.size(), 1);
        QVERIFY(!source.isEmpty());
        source.follow({line(" ", "one"), line("二つ", "two")}, 1);
        QCOMPARE(told.size(), 1);
        source.follow({}, 0);
        QCOMPARE(told.size(), 2);
        QVERIFY(source.isEmpty());
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
            source.follow(lines, first);
            QCOMPARE(source.text(), joinedAnew(lines));
        }
    }
};

LUMAPHONE_TEST(JoinedTextTest)

} // namespace joinedtexttest

#include "JoinedTextTest.moc"
