#pragma once

#include "platform/DefaultsStore.h"

#include <map>

namespace lumaphone::cli {

/// The user's defaults with the choices of one command on top of them: what is set lives as long as this
/// object and never reaches the user's store.
class SessionDefaults final : public DefaultsStore
{
public:
    /// `user` must outlive this object.
    explicit SessionDefaults(const DefaultsStore &user)
        : m_user(user)
    {
    }

    std::optional<DefaultsValue> object(const QString &key) const override
    {
        const auto found = m_values.find(key);
        return found != m_values.end() ? found->second : m_user.object(key);
    }
    void setObject(const QString &key, const DefaultsValue &value) override { m_values[key] = value; }
    void removeObject(const QString &key) override { m_values[key] = std::nullopt; }

private:
    const DefaultsStore &m_user;
    std::map<QString, std::optional<DefaultsValue>> m_values;
};

} // namespace lumaphone::cli
