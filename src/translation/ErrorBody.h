#pragma once

#include <QByteArray>
#include <QString>

/// What a person gets to see of a response that reports an error.
namespace lumaphone::error_body {

/// The body as text; empty when it is not UTF-8.
QString text(const QByteArray &body);

/// The first 700 characters, as people count them, with bearer tokens redacted; a fixed text for an empty
/// body.
QString sanitized(const QString &body);

/// Without `secret`, as it is or as JSON and addresses write it, and without a beginning of it at the end of
/// the text. A secret of fewer than eight UTF-16 units is no secret: it is left alone, so that "a" cannot
/// blacken a whole text.
QString withoutSecret(const QString &text, const QString &secret);

} // namespace lumaphone::error_body
