#include "translation/ondevice/TranslationRoute.h"

#include "support/program/TestProgram.h"

#include <QObject>
#include <QTest>

namespace translationroutetest {

using namespace lumaphone;

namespace {

ModelCatalogue catalogue(const QList<std::pair<QString, QString>> &pairs)
{
    QStringList models;
    for (const auto &[source, target] : pairs) {
        models.append(
            QStringLiteral(R"({"id": "%1-%2", "kind": "translation", "title": "x", "languages": ["%1", "%2"],
            "licence": {"text": "x", "mustBeAccepted": false}, "downloads": [{"url": "http:\/\/x\/x",
            "compression": "none", "files": [{"role": "model", "name": "x", "sha256": "%3"}]}]})")
                .arg(source, target, QString(64, '0')));
    }
    return ModelCatalogue::fromJson(
        ("{\"models\": [" + models.join(QLatin1Char(',')) + "]}").toUtf8(), QStringLiteral("test"));
}

} // namespace

class TranslationRouteTest : public QObject
{
    Q_OBJECT

private slots:
    void languagesAreFoundHoweverTheyAreWritten_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("target");
        QTest::addColumn<QStringList>("legs");
        const QStringList direct {"en-zh-Hant"};
        const QStringList pivoted {"ja-en", "en-zh-Hant"};
        QTest::newRow("as they stand") << "en"
                                       << "zh-Hant" << direct;
        QTest::newRow("with regions") << "en-US"
                                      << "zh-TW" << direct;
        QTest::newRow("with underscores") << "ja_JP"
                                          << "zh_Hant_TW" << pivoted;
        QTest::newRow("any case") << "JA"
                                  << "ZH-HANT" << pivoted;
        QTest::newRow("Chinese alone is Traditional") << "ja"
                                                      << "zh" << pivoted;
        QTest::newRow("Simplified is another language") << "ja"
                                                        << "zh-Hans" << QStringList();
        QTest::newRow("Simplified by its region") << "ja"
                                                  << "zh-CN" << QStringList();
        QTest::newRow("no model") << "fr"
                                  << "zh-Hant" << QStringList();
        QTest::newRow("nothing") << ""
                                 << "" << QStringList();
    }
    void languagesAreFoundHoweverTheyAreWritten()
    {
        QFETCH(QString, source);
        QFETCH(QString, target);
        QFETCH(QStringList, legs);
        const ModelCatalogue models = catalogue({{"en", "zh-Hant"}, {"ja", "en"}});
        const TranslationRoute route = translationRoute(models, {source}, {target});
        QStringList found;
        for (const ModelEntry *leg : route.legs) {
            found.append(leg->id);
        }
        QCOMPARE(found, legs);
    }

    void theLastLegSaysWhatItsTextStillNeeds()
    {
        const ModelCatalogue both = catalogue({{"en", "zh-Hans"}, {"en", "zh-Hant"}, {"ja", "en"}});
        QCOMPARE(translationRoute(both, {"ja"}, {"zh-Hant"}).written, WrittenChinese::traditional);
        QCOMPARE(translationRoute(both, {"ja"}, {"en"}).written, WrittenChinese::none);
        QCOMPARE(translationRoute(both, {"ja"}, {"zh-Hans"}).written, WrittenChinese::none);
        const ModelCatalogue simplified = catalogue({{"en", "zh-Hans"}, {"ja", "en"}});
        const TranslationRoute route = translationRoute(simplified, {"ja"}, {"zh-Hant"});
        QCOMPARE(route.written, WrittenChinese::simplified);
        QCOMPARE(route.legs.last()->id, QStringLiteral("en-zh-Hans"));
    }
};

LUMAPHONE_TEST(TranslationRouteTest)

} // namespace translationroutetest

#include "TranslationRouteTest.moc"
