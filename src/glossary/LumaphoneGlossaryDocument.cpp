#include "glossary/LumaphoneGlossaryDocument.h"

#include "base/Record.h"

namespace lumaphone {

namespace {

json::Value encodedTerm(const LumaphoneGlossaryTerm &term)
{
    return {
        {"id", json::fromText(uuidText(term.id))},
        {"source", json::fromText(term.source)},
        {"target", json::fromText(term.target)},
        {"mode", json::fromText(rawValue(term.mode))},
        {"note", json::fromText(term.note)},
        {"isEnabled", term.isEnabled},
        {"caseSensitive", term.caseSensitive},
    };
}

LumaphoneGlossaryTerm decodedTerm(const json::Value &object)
{
    const QString mode = json::text(object, "mode");
    const auto knownMode = lumaphoneGlossaryTermMode(mode);
    if (!knownMode) {
        throw json::DecodingError(
            QStringLiteral("JSON 欄位「mode」應為 preserve 或 translate，而不是「%1」。").arg(mode));
    }
    return {
        .id = json::uuid(object, "id"),
        .source = json::text(object, "source"),
        .target = json::text(object, "target"),
        .mode = *knownMode,
        .note = json::text(object, "note"),
        .isEnabled = json::boolean(object, "isEnabled"),
        .caseSensitive = json::boolean(object, "caseSensitive"),
    };
}

} // namespace

QByteArray LumaphoneGlossaryDocument::encoded() const
{
    json::Value array = json::Value::array();
    for (const LumaphoneGlossaryTerm &term : terms) {
        array.push_back(encodedTerm(term));
    }
    return json::pretty({{"terms", std::move(array)}});
}

LumaphoneGlossaryDocument LumaphoneGlossaryDocument::decoded(const json::Value &root)
{
    return {decodedGlossaryTerms(json::member(root, "terms"))};
}

QList<LumaphoneGlossaryTerm> decodedGlossaryTerms(const json::Value &array)
{
    if (!array.is_array()) {
        throw json::DecodingError(QStringLiteral("JSON 應為術語的陣列。"));
    }
    QList<LumaphoneGlossaryTerm> terms;
    terms.reserve(static_cast<qsizetype>(array.size()));
    for (const json::Value &object : array) {
        try {
            terms.append(decodedTerm(object));
        } catch (const json::DecodingError &error) {
            throw json::DecodingError(
                QStringLiteral("第 %1 個術語：%2").arg(terms.size() + 1).arg(error.errorDescription()));
        }
    }
    return terms;
}

} // namespace lumaphone
