#include "base/Json.h"

#include "base/Record.h"

#include <QStringDecoder>
#include <QStringEncoder>

namespace lumaphone::json {

namespace {

/// Deeper than any file of ours. Without a limit, brackets alone could fill the memory.
constexpr int maximumDepth = 512;
constexpr qsizetype maximumReasonLength = 300;

bool nestsTooDeeply(const QByteArray &bytes)
{
    int depth = 0;
    bool inText = false;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const char byte = bytes[i];
        if (byte == '"') {
            inText = !inText;
        } else if (inText) {
            i += byte == '\\' ? 1 : 0;
        } else if (byte == '[' || byte == '{') {
            if (++depth > maximumDepth) {
                return true;
            }
        } else if (byte == ']' || byte == '}') {
            --depth;
        }
    }
    return false;
}

/// All characters of a string, a byte-order mark at its beginning included.
QString toText(const std::string &utf8)
{
    QStringDecoder decoder(QStringConverter::Utf8, QStringConverter::Flag::ConvertInitialBom);
    return decoder(QByteArrayView(utf8));
}

[[noreturn]] void failAt(const char *key, const char *wanted)
{
    throw DecodingError(
        QStringLiteral("JSON 欄位「%1」應為 %2。").arg(QString::fromUtf8(key), QString::fromUtf8(wanted)));
}

/// The library quotes what it read last, which may be long, and secret.
QString withoutQuotedBytes(const nlohmann::json::exception &error)
{
    const QString message = QString::fromUtf8(error.what());
    return message.left(message.indexOf(QStringLiteral("; last read:"))).left(maximumReasonLength);
}

QByteArray dumped(const auto &value, int indent)
{
    return QByteArray::fromStdString(
        value.dump(indent, ' ', false, nlohmann::json::error_handler_t::replace));
}

} // namespace

Value parse(const QByteArray &bytes)
{
    if (nestsTooDeeply(bytes)) {
        throw DecodingError(QStringLiteral("JSON 的巢狀層數超過 %1。").arg(maximumDepth));
    }
    try {
        return Value::parse(bytes.constBegin(), bytes.constEnd());
    } catch (const nlohmann::json::exception &error) {
        throw DecodingError(QStringLiteral("JSON 格式不正確：%1").arg(withoutQuotedBytes(error)));
    }
}

QByteArray compact(const Value &value)
{
    return dumped(value, -1);
}

QByteArray compact(const OrderedValue &value)
{
    return dumped(value, -1);
}

QByteArray pretty(const Value &value)
{
    return dumped(value, 2);
}

std::string fromText(const QString &text)
{
    // toStdString() would write question marks for what is not valid.
    QStringEncoder encoder(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    const QByteArray utf8 = encoder(text);
    return utf8.toStdString();
}

const Value &member(const Value &object, const char *key)
{
    if (!object.is_object()) {
        throw DecodingError(
            QStringLiteral("JSON 應為物件，才能讀取欄位「%1」。").arg(QString::fromUtf8(key)));
    }
    const auto found = object.find(key);
    if (found == object.end()) {
        throw DecodingError(QStringLiteral("JSON 缺少欄位「%1」。").arg(QString::fromUtf8(key)));
    }
    return *found;
}

QString text(const Value &object, const char *key)
{
    const Value &value = member(object, key);
    if (!value.is_string()) {
        failAt(key, "字串");
    }
    return toText(value.get_ref<const std::string &>());
}

QList<QString> texts(const Value &object, const char *key)
{
    const Value &value = member(object, key);
    if (!value.is_array()) {
        failAt(key, "陣列");
    }
    QList<QString> result;
    result.reserve(static_cast<qsizetype>(value.size()));
    for (const Value &element : value) {
        if (!element.is_string()) {
            failAt(key, "字串的陣列");
        }
        result.append(toText(element.get_ref<const std::string &>()));
    }
    return result;
}

bool boolean(const Value &object, const char *key)
{
    const Value &value = member(object, key);
    if (!value.is_boolean()) {
        failAt(key, "布林值");
    }
    return value.get<bool>();
}

std::int64_t integer(const Value &object, const char *key)
{
    const Value &value = member(object, key);
    const bool tooLarge = value.is_number_unsigned()
        && value.get<std::uint64_t>() > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    if (!value.is_number_integer() || tooLarge) {
        failAt(key, "整數");
    }
    return value.get<std::int64_t>();
}

double number(const Value &object, const char *key)
{
    const Value &value = member(object, key);
    if (!value.is_number()) {
        failAt(key, "數字");
    }
    return value.get<double>();
}

QUuid uuid(const Value &object, const char *key)
{
    const auto value = uuidFromText(text(object, key));
    if (!value) {
        failAt(key, "UUID");
    }
    return *value;
}

QDateTime date(const Value &object, const char *key)
{
    const auto value = dateFromIso8601(text(object, key));
    if (!value) {
        failAt(key, "ISO 8601 日期");
    }
    return *value;
}

QString excerpt(const QString &text)
{
    constexpr qsizetype longest = 60;
    return text.size() <= longest ? text : text.left(longest) + QStringLiteral("…");
}

bool has(const Value &object, const char *key)
{
    return object.is_object() && object.contains(key) && !object.at(key).is_null();
}

} // namespace lumaphone::json
