#include "base/Json.h"

#include "base/Record.h"

namespace lumaphone::json {

namespace {

[[noreturn]] void failAt(const char *key, const char *wanted)
{
    throw DecodingError(
        QStringLiteral("JSON 欄位「%1」應為 %2。").arg(QString::fromUtf8(key), QString::fromUtf8(wanted)));
}

/// The library quotes what it read last, which may be long, and secret.
QString withoutQuotedBytes(const nlohmann::json::exception &error)
{
    const QString message = QString::fromUtf8(error.what());
    return message.left(message.indexOf(QStringLiteral("; last read:")));
}

QByteArray dumped(const auto &value, int indent)
{
    return QByteArray::fromStdString(
        value.dump(indent, ' ', false, nlohmann::json::error_handler_t::replace));
}

} // namespace

Value parse(const QByteArray &bytes)
{
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
    return text.toStdString();
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
    return QString::fromStdString(value.get_ref<const std::string &>());
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

bool has(const Value &object, const char *key)
{
    return object.is_object() && object.contains(key) && !object.at(key).is_null();
}

} // namespace lumaphone::json
