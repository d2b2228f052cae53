#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

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

/// Asks the same of many texts at once: whether each but the first is a revision of the one before it. A
/// helper may know nothing of this request; the single one is what every helper answers.
struct CoreRevisionsRequest
{
    QStringList texts;
};

struct CoreRevisionsResponse
{
    QList<bool> areRevisions; ///< one answer for each text but the first
};

/// Compact JSON, members in the fixed order operation, current_text, incoming_text.
QByteArray encode(const CoreRevisionRequest &request);
/// Compact JSON.
QByteArray encode(CoreRevisionResponse response);
/// Members besides the answer are ignored. Throws json::DecodingError.
CoreRevisionResponse decodeCoreRevisionResponse(const QByteArray &bytes);

/// Compact JSON, members in the order operation, texts.
QByteArray encode(const CoreRevisionsRequest &request);
/// Compact JSON.
QByteArray encode(const CoreRevisionsResponse &response);
/// Throws json::DecodingError, also unless there are `count` answers.
CoreRevisionsResponse decodeCoreRevisionsResponse(const QByteArray &bytes, qsizetype count);

/// What a helper answers to a request of either kind: the built-in rule's decision. Throws
/// json::DecodingError, also for an operation that is not known.
QByteArray answerOfTheRule(const QByteArray &request);

} // namespace lumaphone
