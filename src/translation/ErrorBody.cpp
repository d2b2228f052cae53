#include "translation/ErrorBody.h"

#include <QRegularExpression>
#include <QStringDecoder>
#include <QTextBoundaryFinder>
#include <QUrl>

#include <algorithm>

namespace lumaphone::error_body {

namespace {

constexpr int maximumCharacters = 700;
constexpr qsizetype minimumSecretLength = 8;

QString firstCharacters(const QString &text, int count)
{
    // A boundary is certain once the scalar behind it is known, so a prefix of a long text is enough.
    for (qsizetype looked = 4096;; looked *= 2) {
        QTextBoundaryFinder finder(
            QTextBoundaryFinder::Grapheme, text.constData(), std::min(looked, text.size()));
        qsizetype end = 0;
        for (int i = 0; i < count && end >= 0; ++i) {
            end = finder.toNextBoundary();
        }
        if (looked >= text.size()) {
            return end < 0 ? text : text.left(end);
        }
        if (end >= 0 && end < looked - 1) {
            return text.left(end);
        }
    }
}

} // namespace

QString text(const QByteArray &body)
{
    QStringDecoder decoder(
        QStringDecoder::Utf8, QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    const QString decoded = decoder(body);
    return decoder.hasError() ? QString() : decoded;
}

QString sanitized(const QString &body)
{
    static const QRegularExpression bearerToken(
        QStringLiteral("Bearer\\s+[A-Za-z0-9._\\-]+"), QRegularExpression::UseUnicodePropertiesOption);

    QString shortened = firstCharacters(body, maximumCharacters);
    if (shortened.isEmpty()) {
        return QStringLiteral("沒有回傳錯誤內容。");
    }
    return shortened.replace(bearerToken, QStringLiteral("Bearer [redacted]"));
}

QString withoutSecret(const QString &text, const QString &secret)
{
    if (secret.size() < minimumSecretLength) {
        return text;
    }
    const QString redacted = QStringLiteral("[redacted]");
    const QString inJson = QString(secret).replace(QLatin1Char('/'), QStringLiteral("\\/"));
    const QString inAddress = QString::fromLatin1(QUrl::toPercentEncoding(secret));
    QString result = text;
    for (const QString &spelling : {secret, inJson, inAddress}) {
        result.replace(spelling, redacted);
    }
    for (qsizetype length = secret.size() - 1; length >= minimumSecretLength; --length) {
        if (result.endsWith(QStringView(secret).first(length))) {
            return result.chopped(length) + redacted;
        }
    }
    return result;
}

} // namespace lumaphone::error_body
