#pragma once

#include <QString>

namespace lumaphone {

/// The server that a base URL without white space at its ends names, as "https://example.org" or
/// "http://localhost:11434", which stands for whom a key is for. Empty for anything but http and https.
QString providerAddress(const QString &baseURL);

} // namespace lumaphone
