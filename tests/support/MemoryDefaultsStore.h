#pragma once

#include "platform/DefaultsStore.h"

#include <QStringList>

#include <map>

namespace lumaphone::test {

/// A defaults store that lives as long as the test and remembers how it was used.
class MemoryDefaultsStore final : public DefaultsStore
{
public:
    std::optional<DefaultsValue> object(const QString &key) const override
    {
        reads.append(key);
        const auto found = values.find(key);
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }
    void setObject(const QString &key, const DefaultsValue &value) override
    {
        writes.append(key);
        values[key] = value;
    }
    void removeObject(const QString &key) override { values.erase(key); }

    std::map<QString, DefaultsValue> values;
    mutable QStringList reads; ///< keys, in the order of reading
    QStringList writes; ///< keys, in the order of writing
};

} // namespace lumaphone::test
