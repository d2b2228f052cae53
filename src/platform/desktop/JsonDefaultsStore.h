#pragma once

#include "platform/DefaultsStore.h"

#include <nlohmann/json.hpp>

#include <map>

namespace lumaphone {

/// The user's choices as one JSON object in one file, which several processes may write.
///
/// Every change is written at once, atomically and flushed; keys of others and values of kinds unknown here
/// stay as they are. A file that cannot be read as such an object counts as empty; before the first change
/// replaces it, it is kept under another name.
class JsonDefaultsStore final : public DefaultsStore
{
public:
    /// Reads the file. A link is followed, so that it stays one.
    explicit JsonDefaultsStore(const QString &path);

    std::optional<DefaultsValue> object(const QString &key) const override;
    void setObject(const QString &key, const DefaultsValue &value) override;
    void removeObject(const QString &key) override;

private:
    /// A value, or null for a removal.
    using Change = nlohmann::json;

    void change(const QString &key, Change change);
    void write();

    const QString m_path;
    nlohmann::json m_values; ///< an object: what the file held, with the changes of this process
    std::map<std::string, Change> m_unwritten; ///< changes that no write has carried to the file yet
};

} // namespace lumaphone
