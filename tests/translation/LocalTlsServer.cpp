#include "translation/LocalTlsServer.h"

#include <QFile>
#include <QProcess>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QTemporaryDir>

namespace lumaphone::test {

std::unique_ptr<QSslServer> makeSelfSignedTlsServer()
{
    const QTemporaryDir folder;
    const QString keyPath = folder.filePath(QStringLiteral("key.pem"));
    const QString certificatePath = folder.filePath(QStringLiteral("certificate.pem"));
    QProcess openssl;
    openssl.start(QStringLiteral("openssl"),
        {QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"), QStringLiteral("ec"),
            QStringLiteral("-pkeyopt"), QStringLiteral("ec_paramgen_curve:prime256v1"),
            QStringLiteral("-nodes"), QStringLiteral("-days"), QStringLiteral("2"), QStringLiteral("-subj"),
            QStringLiteral("/CN=127.0.0.1"), QStringLiteral("-addext"),
            QStringLiteral("subjectAltName=IP:127.0.0.1"), QStringLiteral("-keyout"), keyPath,
            QStringLiteral("-out"), certificatePath});
    if (!openssl.waitForFinished() || openssl.exitCode() != 0) {
        return nullptr;
    }
    QFile keyFile(keyPath);
    if (!keyFile.open(QFile::ReadOnly)) {
        return nullptr;
    }
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificateChain(QSslCertificate::fromPath(certificatePath));
    configuration.setPrivateKey(QSslKey(&keyFile, QSsl::Ec));
    auto server = std::make_unique<QSslServer>();
    server->setSslConfiguration(configuration);
    return server;
}

} // namespace lumaphone::test
