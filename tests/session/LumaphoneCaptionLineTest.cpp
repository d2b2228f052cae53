#include "session/LumaphoneCaptionLine.h"

#include "support/Coroutines.h"
#include "support/program/TestProgram.h"

#include <QTest>
#include <QTimeZone>

#include <limits>

namespace lumaphonecaptionlinetest {

using namespace lumaphone;
using lumaphone::test::thrownBy;
using enum AppleSystemSpeechLanguage;

namespace {

LumaphoneCaptionLine someLine()
{
    return {
        .id = QUuid::fromString(QStringLiteral("0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8f9")),
        .sourceText = QStringLiteral("今日は"),
        .sourceLanguage = japanese,
        .translatedText = QStringLiteral("今天"),
        .createdAt = QDateTime(QDate(2026, 3, 1), QTime(9, 30), QTimeZone::utc()),
        .isFinal = true,
        .revision = 4,
    };
}

} // namespace

class LumaphoneCaptionLineTest : public QObject
{
    Q_OBJECT

private slots:
    void thePlaceholderIsTwelveBytes()
    {
        QCOMPARE(
            pendingTranslationPlaceholder.toUtf8(), QByteArray("\xe7\xbf\xbb\xe8\xad\xaf\xe4\xb8\xad..."));
        QCOMPARE(pendingTranslationPlaceholder.toUtf8().size(), 12);
    }

    void equalityComparesEveryField()
    {
        const LumaphoneCaptionLine line = someLine();
        QVERIFY(line == someLine());
        const auto differs = [&line](auto change) {
            LumaphoneCaptionLine other = line;
            change(other);
            return !(line == other) && line != other;
        };
        QVERIFY(differs([](auto &other) { other.id = QUuid(); }));
        QVERIFY(differs([](auto &other) { other.sourceText += QLatin1Char('x'); }));
        QVERIFY(differs([](auto &other) { other.sourceLanguage = korean; }));
        QVERIFY(differs([](auto &other) { other.translatedText.clear(); }));
        QVERIFY(differs([](auto &other) { other.createdAt = other.createdAt.addSecs(1); }));
        QVERIFY(differs([](auto &other) { other.isFinal = false; }));
        QVERIFY(differs([](auto &other) { ++other.revision; }));
    }

    void textsAreEqualUnderCanonicalEquivalence()
    {
        LumaphoneCaptionLine composed = someLine();
        LumaphoneCaptionLine decomposed = someLine();
        composed.sourceText = QStringLiteral("が");
        decomposed.sourceText = QStringLiteral("か\u3099");
        QVERIFY(composed == decomposed);
    }

    void isCodedUnderTheFieldNames()
    {
        QCOMPARE(json::compact(toJson(someLine())),
            QByteArray(
                "{\"createdAt\":\"2026-03-01T09:30:00Z\",\"id\":\"0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9\","
                "\"isFinal\":true,\"revision\":4,\"sourceLanguage\":\"japanese\","
                "\"sourceText\":\"今日は\",\"translatedText\":\"今天\"}"));
    }

    void survivesCoding()
    {
        LumaphoneCaptionLine line = someLine();
        QVERIFY(captionLineFromJson(toJson(line)) == line);
        line.revision = std::numeric_limits<std::int64_t>::max();
        line.isFinal = false;
        line.sourceLanguage = automatic;
        line.sourceText = QStringLiteral("\"\\\n\u2028👨‍👩‍👧‍👦");
        QVERIFY(captionLineFromJson(json::parse(json::pretty(toJson(line)))) == line);
    }

    void readsIdentitiesInEitherCaseAndDatesWithOffset()
    {
        json::Value value = toJson(someLine());
        value["id"] = "0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8f9";
        value["createdAt"] = "2026-03-01T17:30:00+08:00";
        value["later"] = "ignored";
        QVERIFY(captionLineFromJson(value) == someLine());
    }

    void everyKeyIsRequired()
    {
        const json::Value value = toJson(someLine());
        QCOMPARE(value.size(), std::size_t(7));
        for (const auto &[key, unused] : value.items()) {
            json::Value incomplete = value;
            incomplete.erase(key);
            const auto error = thrownBy<json::DecodingError>([&] { captionLineFromJson(incomplete); });
            QVERIFY(error);
            QVERIFY(error->errorDescription().contains(QString::fromStdString(key)));
        }
    }

    void wrongValuesAreRefused_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        QTest::newRow("id") << "id"
                            << "\"1\"";
        QTest::newRow("id in braces") << "id"
                                      << "\"{0a1b2c3d-4e5f-6071-8293-a4b5c6d7e8f9}\"";
        QTest::newRow("sourceText") << "sourceText"
                                    << "null";
        QTest::newRow("unknown language") << "sourceLanguage"
                                          << "\"french\"";
        QTest::newRow("language in capitals") << "sourceLanguage"
                                              << "\"Japanese\"";
        QTest::newRow("translatedText") << "translatedText"
                                        << "[]";
        QTest::newRow("date without time") << "createdAt"
                                           << "\"2026-03-01\"";
        QTest::newRow("date with a fraction") << "createdAt"
                                              << "\"2026-03-01T09:30:00.5Z\"";
        QTest::newRow("date as number") << "createdAt"
                                        << "0";
        QTest::newRow("isFinal") << "isFinal"
                                 << "1";
        QTest::newRow("revision as text") << "revision"
                                          << "\"1\"";
        QTest::newRow("revision too large") << "revision"
                                            << "9223372036854775808";
        QTest::newRow("revision with a fraction") << "revision"
                                                  << "1.5";
    }
    void wrongValuesAreRefused()
    {
        QFETCH(QString, key);
        QFETCH(QString, value);
        json::Value line = toJson(someLine());
        line[key.toStdString()] = json::parse(value.toUtf8());
        QVERIFY(thrownBy<json::DecodingError>([&] { captionLineFromJson(line); }));
    }

    void changesAreCounted()
    {
        LumaphoneCaptionLine line = someLine();
        countRevision(line);
        QCOMPARE(line.revision, 5);
    }
};

LUMAPHONE_TEST(LumaphoneCaptionLineTest)

} // namespace lumaphonecaptionlinetest

#include "LumaphoneCaptionLineTest.moc"
