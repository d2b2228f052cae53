#include "glossary/GlossaryImport.h"

#include "base/AtomicFile.h"
#include "base/Json.h"
#include "glossary/GlossaryCsv.h"
#include "glossary/GlossaryYaml.h"
#include "glossary/LumaphoneGlossaryDocument.h"
#include "glossary/LumaphoneGlossaryError.h"

#include <QStringDecoder>

#include <cerrno>

namespace lumaphone {

namespace {

/// What follows the last full stop of the file's name, in lower case. A name that begins with its only full
/// stop has no extension.
QString lowerCasedExtension(const QString &path)
{
    const QString name = path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
    const qsizetype stop = name.lastIndexOf(QLatin1Char('.'));
    return stop > 0 ? name.mid(stop + 1).toLower() : QString();
}

QByteArray bytesOf(const QString &path)
{
    const auto bytes = readFile(path);
    if (!bytes) {
        throw FileError(path, ENOENT);
    }
    return bytes->startsWith("\xEF\xBB\xBF") ? bytes->mid(3) : *bytes;
}

QString decodedUtf8(const QByteArray &bytes, const QString &path)
{
    QStringDecoder decoder(QStringConverter::Utf8,
        QStringConverter::Flag::Stateless | QStringConverter::Flag::ConvertInitialBom);
    QString text = decoder(bytes);
    if (decoder.hasError()) {
        throw PlatformError(QStringLiteral("「%1」不是 UTF-8 文字檔，請另存為 UTF-8 後再匯入。").arg(path));
    }
    return text;
}

} // namespace

QList<LumaphoneGlossaryTerm> decodeTerms(const QString &path, const UuidGenerator &makeUuid)
{
    const QByteArray bytes = bytesOf(path);
    const QString text = decodedUtf8(bytes, path);
    const QString extension = lowerCasedExtension(path);
    if (extension == QLatin1String("json")) {
        return decodeGlossaryJson(bytes);
    }
    if (extension == QLatin1String("csv")) {
        return decodeCSV(text, makeUuid);
    }
    if (extension == QLatin1String("yaml") || extension == QLatin1String("yml")) {
        return decodeYAML(text, makeUuid);
    }
    throw LumaphoneGlossaryError(LumaphoneGlossaryError::unsupportedFormat);
}

QList<LumaphoneGlossaryTerm> decodeGlossaryJson(const QByteArray &bytes)
{
    const json::Value root = json::parse(bytes);
    try {
        return LumaphoneGlossaryDocument::decoded(root).terms;
    } catch (const json::DecodingError &) {
        return decodedGlossaryTerms(root);
    }
}

} // namespace lumaphone
