#pragma once

#include <QSslServer>
#include <QString>

#include <memory>

namespace lumaphone::test {

/// A TLS server for 127.0.0.1 whose certificate nobody has signed but itself. Key and certificate are made
/// anew, in a folder that is removed again. None when the tool that makes them is missing.
std::unique_ptr<QSslServer> makeSelfSignedTlsServer();

} // namespace lumaphone::test
