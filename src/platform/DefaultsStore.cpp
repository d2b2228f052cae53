#include "platform/DefaultsStore.h"

namespace lumaphone {

namespace {

template<typename Kind> std::optional<Kind> ofKind(const std::optional<DefaultsValue> &value)
{
    const Kind *found = value ? std::get_if<Kind>(&*value) : nullptr;
    return found ? std::optional(*found) : std::nullopt;
}

} // namespace

std::optional<QString> DefaultsStore::string(const QString &key) const
{
    return ofKind<QString>(object(key));
}

std::optional<double> DefaultsStore::number(const QString &key) const
{
    const std::optional<DefaultsValue> value = object(key);
    if (const auto integer = ofKind<std::int64_t>(value)) {
        return static_cast<double>(*integer);
    }
    return ofKind<double>(value);
}

std::optional<bool> DefaultsStore::boolean(const QString &key) const
{
    return ofKind<bool>(object(key));
}

} // namespace lumaphone
