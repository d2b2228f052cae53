#include "session/LumaphoneSessionDraft.h"

#include "support/CaptionLines.h"
#include "support/Coroutines.h"
#include "support/program/TestProgram.h"

#include <QTest>

namespace lumaphonesessiondrafttest {

using namespace lumaphone;
using namespace lumaphone::test;
using enum AppleSystemSpeechLanguage;

namespace {

LumaphoneSessionDraft someDraft()
{
    const QDateTime date(QDate(2026, 3, 1), QTime(9, 30), QTimeZone::utc());
    return {
        .lines = {captionLine(1, QStringLiteral("今日は")), captionLine(2, QStringLiteral("雨"), false)},
        .sourceLanguage = automatic,
        .detectedLanguage = japanese,
        .startedAt = date,
        .endedAt = date.addSecs(60),
        .updatedAt = date.addSecs(61),
    };
}

} // namespace

class LumaphoneSessionDraftTest : public QObject
{
    Q_OBJECT

private slots:
    void hasItsFieldsUnderTheirNames()
    {
        QCOMPARE(json::compact(toJson(someDraft()))
                     .replace(json::compact(toJson(someDraft().lines[0])), "A")
                     .replace(json::compact(toJson(someDraft().lines[1])), "B"),
            QByteArray(
                "{\"detectedLanguage\":\"japanese\",\"endedAt\":\"2026-03-01T09:31:00Z\",\"lines\":[A,B],"
                "\"sourceLanguage\":\"automatic\",\"startedAt\":\"2026-03-01T09:30:00Z\","
                "\"updatedAt\":\"2026-03-01T09:31:01Z\"}"));
    }

    void whatIsNoneIsAbsent()
    {
        LumaphoneSessionDraft draft = someDraft();
        draft.detectedLanguage.reset();
        draft.startedAt.reset();
        draft.endedAt.reset();
        const json::Value value = toJson(draft);
        QCOMPARE(value.size(), std::size_t(3));
        QVERIFY(sessionDraftFromJson(value) == draft);
    }

    void survivesCoding()
    {
        QVERIFY(sessionDraftFromJson(json::parse(json::pretty(toJson(someDraft())))) == someDraft());
        LumaphoneSessionDraft empty = someDraft();
        empty.lines.clear();
        QVERIFY(sessionDraftFromJson(toJson(empty)) == empty);
    }

    void equalityComparesEveryField()
    {
        const auto differs = [](auto change) {
            LumaphoneSessionDraft other = someDraft();
            change(other);
            return other != someDraft();
        };
        QVERIFY(!differs([](auto &) {}));
        QVERIFY(differs([](auto &draft) { draft.lines.removeLast(); }));
        QVERIFY(differs([](auto &draft) { draft.sourceLanguage = korean; }));
        QVERIFY(differs([](auto &draft) { draft.detectedLanguage.reset(); }));
        QVERIFY(differs([](auto &draft) { draft.startedAt.reset(); }));
        QVERIFY(differs([](auto &draft) { draft.endedAt.reset(); }));
        QVERIFY(differs([](auto &draft) { draft.updatedAt = draft.updatedAt.addSecs(1); }));
    }

    void optionalKeysMayBeMissing_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<bool>("isRequired");
        QTest::newRow("lines") << "lines" << true;
        QTest::newRow("sourceLanguage") << "sourceLanguage" << true;
        QTest::newRow("updatedAt") << "updatedAt" << true;
        QTest::newRow("detectedLanguage") << "detectedLanguage" << false;
        QTest::newRow("startedAt") << "startedAt" << false;
        QTest::newRow("endedAt") << "endedAt" << false;
    }
    void optionalKeysMayBeMissing()
    {
        QFETCH(QString, key);
        QFETCH(bool, isRequired);
        json::Value missing = toJson(someDraft());
        missing.erase(key.toStdString());
        json::Value null = toJson(someDraft());
        null[key.toStdString()] = nullptr;
        json::Value wrong = toJson(someDraft());
        wrong[key.toStdString()] = 5;
        const auto isRefused = [](const json::Value &value) {
            return thrownBy<json::DecodingError>([&] { sessionDraftFromJson(value); }).has_value();
        };
        QCOMPARE(isRefused(missing), isRequired);
        QCOMPARE(isRefused(null), isRequired);
        QVERIFY(isRefused(wrong));
    }

    void linesOfOneIdentityAreToldApart()
    {
        LumaphoneSessionDraft draft = someDraft();
        draft.lines = {captionLine(1, "one"), captionLine(2, "two"), captionLine(1, "three"),
            captionLine(1, "four"), captionLine(1, "four")};
        const LumaphoneSessionDraft healed = sessionDraftFromJson(toJson(draft));
        QSet<QUuid> ids;
        for (qsizetype i = 0; i < draft.lines.size(); ++i) {
            QCOMPARE(healed.lines[i].sourceText, draft.lines[i].sourceText);
            ids.insert(healed.lines[i].id);
        }
        QCOMPARE(ids.size(), draft.lines.size());
        QCOMPARE(healed.lines[0].id, draft.lines[0].id);
        QCOMPARE(healed.lines[1].id, draft.lines[1].id);
        QVERIFY(sessionDraftFromJson(toJson(draft)) == healed);
    }

    void aDamagedLineIsRefused()
    {
        json::Value value = toJson(someDraft());
        value["lines"][1].erase("revision");
        QVERIFY(thrownBy<json::DecodingError>([&] { sessionDraftFromJson(value); }));
    }
};

LUMAPHONE_TEST(LumaphoneSessionDraftTest)

} // namespace lumaphonesessiondrafttest

#include "LumaphoneSessionDraftTest.moc"
