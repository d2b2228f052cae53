#include "translation/provider/ProviderCapabilities.h"

#include "support/program/TestProgram.h"

#include <QTest>

namespace providercapabilitiestest {

using namespace lumaphone;

class ProviderCapabilitiesTest : public QObject
{
    Q_OBJECT

private slots:
    void everythingNeedsABaseURLAndAModel_data();
    void everythingNeedsABaseURLAndAModel();
};

void ProviderCapabilitiesTest::everythingNeedsABaseURLAndAModel_data()
{
    QTest::addColumn<QString>("baseURL");
    QTest::addColumn<QString>("apiKey");
    QTest::addColumn<QString>("model");
    QTest::addColumn<bool>("capable");
    const auto url = QStringLiteral("https://example.org/v1");
    const auto model = QStringLiteral("small");
    QTest::newRow("all three") << url << QStringLiteral("key") << model << true;
    QTest::newRow("a key is not needed") << url << QString() << model << true;
    QTest::newRow("a blank is not empty") << QStringLiteral(" ") << QString() << QStringLiteral("\n") << true;
    QTest::newRow("no base URL") << QString() << QStringLiteral("key") << model << false;
    QTest::newRow("no model") << url << QStringLiteral("key") << QStringLiteral("") << false;
    QTest::newRow("nothing") << QString() << QString() << QString() << false;
}

void ProviderCapabilitiesTest::everythingNeedsABaseURLAndAModel()
{
    QFETCH(const QString, baseURL);
    QFETCH(const QString, apiKey);
    QFETCH(const QString, model);
    QFETCH(const bool, capable);
    const ProviderCapabilities capabilities({baseURL, apiKey, model});
    QCOMPARE(capabilities.supportsTextTranslation, capable);
    QCOMPARE(capabilities.supportsTextPolishing, capable);
    QCOMPARE(capabilities.supportsGlossary, capable);
}

LUMAPHONE_TEST(ProviderCapabilitiesTest)

} // namespace providercapabilitiestest

#include "ProviderCapabilitiesTest.moc"
