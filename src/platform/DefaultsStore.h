#pragma once

#include <QString>

#include <cstdint>
#include <optional>
#include <variant>

namespace lumaphone {

/// A stored value. Kinds stay apart: the text "40" is not the number 40, and true is not 1.
using DefaultsValue = std::variant<bool, std::int64_t, double, QString>;

/// The user's choices, by key; they survive a restart. Main thread; throws nothing.
///
/// A store that cannot be read holds nothing. A change shows at once. It is kept, whatever happens to the
/// process, when the call returns or, with a store that gathers changes, a second later and at the store's
/// end. One that cannot be written lives on in memory and is written with the next.
class DefaultsStore
{
public:
    virtual ~DefaultsStore() = default;

    /// None when the key is absent or its value is of none of the kinds above.
    virtual std::optional<DefaultsValue> object(const QString &key) const = 0;
    virtual void setObject(const QString &key, const DefaultsValue &value) = 0;
    virtual void removeObject(const QString &key) = 0;

    /// A stored text; none for anything else.
    std::optional<QString> string(const QString &key) const;
    /// A stored number, integers included; none for anything else.
    std::optional<double> number(const QString &key) const;
    /// A stored truth value; none for anything else.
    std::optional<bool> boolean(const QString &key) const;
};

} // namespace lumaphone
