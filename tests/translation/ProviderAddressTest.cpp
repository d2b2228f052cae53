#include "translation/provider/ProviderAddress.h"

#include "support/program/TestProgram.h"

#include <QTest>

namespace provideraddresstest {

using namespace lumaphone;

class ProviderAddressTest : public QObject
{
    Q_OBJECT

private slots:
    void aBaseURLNamesItsServer_data()
    {
        QTest::addColumn<QString>("baseURL");
        QTest::addColumn<QString>("address");
        QTest::newRow("path") << "https://api.example.org/v1"
                              << "https://api.example.org";
        QTest::newRow("no path") << "https://api.example.org"
                                 << "https://api.example.org";
        QTest::newRow("port") << "http://localhost:11434/v1"
                              << "http://localhost:11434";
        QTest::newRow("the port that goes without saying") << "https://example.org:443/"
                                                           << "https://example.org";
        QTest::newRow("the same of the other scheme") << "http://example.org:80/"
                                                      << "http://example.org";
        QTest::newRow("the other scheme's port") << "http://example.org:443/"
                                                 << "http://example.org:443";
        QTest::newRow("capitals") << "HTTPS://API.Example.ORG/V1"
                                  << "https://api.example.org";
        QTest::newRow("query and fragment") << "https://example.org/v1?a=b#c"
                                            << "https://example.org";
        QTest::newRow("a name before the host") << "https://example.org@evil.test/v1"
                                                << "https://evil.test";
        QTest::newRow("number") << "http://[::1]:8080/v1"
                                << "http://[::1]:8080";
        QTest::newRow("no scheme") << "example.org/v1"
                                   << "";
        QTest::newRow("another scheme") << "ftp://example.org/v1"
                                        << "";
        QTest::newRow("a file") << "file:///etc/passwd"
                                << "";
        QTest::newRow("no host") << "https:///v1"
                                 << "";
        QTest::newRow("blank within") << "https://exa mple.org"
                                      << "";
        QTest::newRow("nothing") << ""
                                 << "";
    }

    void aBaseURLNamesItsServer()
    {
        QFETCH(const QString, baseURL);
        QTEST(providerAddress(baseURL), "address");
    }
};

LUMAPHONE_TEST(ProviderAddressTest)

} // namespace provideraddresstest

#include "ProviderAddressTest.moc"
