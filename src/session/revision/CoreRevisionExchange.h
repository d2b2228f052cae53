#pragma once

#include <QByteArray>
#include <QString>

/// The exchange with the core helper: one request on its standard input, one response on its standard output.
namespace lumaphone {

/// Asks whether `incomingText` is a revision of `currentText`. The texts travel exactly as given.
struct CoreRevisionRequest
{
    QString currentText;
    QString incomingText;
};

struct CoreRevisionResponse
{
    bool isRevision;
};

/// Compact JSON, members in the fixed order operation, current_text, incoming_text.
QByteArray encode(const CoreRevisionRequest &request);
/// Compact JSON.
QByteArray encode(CoreRevisionResponse response);
/// Throws json::DecodingError, also for an operation that is not known.
CoreRevisionRequest decodeCoreRevisionRequest(const QByteArray &bytes);
/// Members besides the answer are ignored. Throws json::DecodingError.
CoreRevisionResponse decodeCoreRevisionResponse(const QByteArray &bytes);

} // namespace lumaphone
