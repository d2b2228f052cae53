#include "translation/provider/ProviderAddress.h"

#include <QUrl>

namespace lumaphone {

QString providerAddress(const QString &baseURL)
{
    const QUrl url(baseURL, QUrl::StrictMode);
    const QString scheme = url.scheme();
    const bool isSecure = scheme == QStringLiteral("https");
    if ((!isSecure && scheme != QStringLiteral("http")) || url.host().isEmpty()) {
        return {};
    }
    QUrl server;
    server.setScheme(scheme);
    server.setHost(url.host());
    server.setPort(url.port() == (isSecure ? 443 : 80) ? -1 : url.port());
    return server.toString(QUrl::FullyEncoded);
}

} // namespace lumaphone
