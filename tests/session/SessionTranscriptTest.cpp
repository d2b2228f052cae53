#include "session/SessionTranscript.h"

#include "support/CountedUuids.h"
#include "support/program/TestProgram.h"

#include <QTest>
#include <QTimeZone>

namespace sessiontranscripttest {

using namespace lumaphone;
using test::countedUuid;

namespace {

const QDateTime begin = QDateTime(QDate(2026, 1, 31), QTime(8, 0), QTimeZone::utc());

LumaphoneCaptionLine line(uint number, const QString &source, const QString &translation)
{
    return {.id = countedUuid(number),
        .sourceText = source,
        .sourceLanguage = AppleSystemSpeechLanguage::korean,
        .translatedText = translation,
        .createdAt = begin.addSecs(number),
        .isFinal = number % 2 == 1,
        .revision = 7};
}

LumaphoneGlossaryTerm term(uint number, const QString &source, bool caseSensitive = false)
{
    return {countedUuid(number), source, QStringLiteral("t"), LumaphoneGlossaryTermMode::translate, {}, true,
        caseSensitive};
}

} // namespace

class SessionTranscriptTest : public QObject
{
    Q_OBJECT

private slots:
    void everyLineIsTakenAsItStands()
    {
        const auto lines = savedTranscriptLines({line(1, QStringLiteral(" a "), QStringLiteral("翻譯中...")),
            line(2, QString(), QStringLiteral("b"))});
        QVERIFY(lines
            == (QList<SavedTranscriptLine> {
                {countedUuid(1), QStringLiteral(" a "), QStringLiteral("翻譯中..."),
                    AppleSystemSpeechLanguage::korean, begin.addSecs(1), true},
                {countedUuid(2), QString(), QStringLiteral("b"), AppleSystemSpeechLanguage::korean,
                    begin.addSecs(2), false}}));
    }

    void termsAreFoundInTextsAndTranslations()
    {
        const QList<LumaphoneGlossaryTerm> terms {term(1, QStringLiteral("tea")),
            term(2, QStringLiteral("茶")), term(3, QStringLiteral("coffee")),
            term(4, QStringLiteral("tea"), true), term(5, QStringLiteral("timetea"))};
        const auto matched = matchedGlossaryTerms(terms,
            {line(1, QStringLiteral("in time"), QString()),
                line(2, QStringLiteral("Tea"), QStringLiteral("茶"))});
        QVERIFY(matched == (QList<LumaphoneGlossaryTerm> {terms[0], terms[1]}));
        QVERIFY(matchedGlossaryTerms(terms, {}).isEmpty());
    }

    void aDraftBecomesATranscript()
    {
        const LumaphoneSessionDraft draft {.lines = {line(1, QStringLiteral("tea"), QString())},
            .sourceLanguage = AppleSystemSpeechLanguage::automatic,
            .detectedLanguage = AppleSystemSpeechLanguage::korean,
            .startedAt = begin,
            .endedAt = begin.addSecs(60),
            .updatedAt = begin.addSecs(90)};
        const LiveTranscript live = liveTranscript(draft, {term(1, QStringLiteral("tea"))});
        QVERIFY(live.lines == savedTranscriptLines(draft.lines));
        QCOMPARE(live.startedAt, draft.startedAt);
        QCOMPARE(live.endedAt, draft.endedAt);
        QCOMPARE(live.sourceLanguage, AppleSystemSpeechLanguage::automatic);
        QCOMPARE(live.detectedLanguage, draft.detectedLanguage);
        QCOMPARE(live.matchedTerms.size(), 1);
        QVERIFY(!live.savedTranscriptID);
    }
};

LUMAPHONE_TEST(SessionTranscriptTest)

} // namespace sessiontranscripttest

#include "SessionTranscriptTest.moc"
