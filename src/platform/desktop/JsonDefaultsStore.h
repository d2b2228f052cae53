#pragma once

#include "platform/DefaultsStore.h"

#include <QObject>

#include <nlohmann/json.hpp>

#include <chrono>
#include <map>
#include <memory>
#include <optional>

namespace lumaphone {

class Clock;

/// The user's choices as one JSON object in one file, which several processes may write.
///
/// Every write is atomic and flushed; keys of others and values of kinds unknown here stay as they are. A
/// file that cannot be read as such an object counts as empty; before the first change replaces it, it is
/// kept under another name.
class JsonDefaultsStore final : public DefaultsStore
{
public:
    /// How long no change has to come until those that have come are written.
    static constexpr std::chrono::milliseconds rest {250};
    /// After this time changes are written even while more are coming.
    static constexpr std::chrono::milliseconds longestDelay {1000};

    /// Reads the file. A link is followed, so that it stays one. Every change is written at once.
    explicit JsonDefaultsStore(const QString &path);
    /// The same for those who change a value many times a second, such as with a slider: their changes are
    /// gathered.
    JsonDefaultsStore(const QString &path, std::shared_ptr<Clock> clock);
    /// Writes what has been gathered.
    ~JsonDefaultsStore() override;
    JsonDefaultsStore(const JsonDefaultsStore &) = delete;
    JsonDefaultsStore &operator=(const JsonDefaultsStore &) = delete;

    std::optional<DefaultsValue> object(const QString &key) const override;
    void setObject(const QString &key, const DefaultsValue &value) override;
    void removeObject(const QString &key) override;

private:
    /// A value, or null for a removal.
    using Change = nlohmann::json;

    void change(const QString &key, Change change);
    void gather();
    std::chrono::nanoseconds dueTime() const;
    void wait();
    void tryToWrite();
    void write();

    const QString m_path;
    const std::shared_ptr<Clock> m_clock; ///< none when every change is written at once
    QObject m_life; ///< for what wakes up later
    bool m_isWaiting = false;
    std::optional<std::chrono::nanoseconds> m_firstGathered; ///< when the first change since a write came
    std::chrono::nanoseconds m_lastGathered {};
    nlohmann::json m_values; ///< an object: what the file held, with the changes of this process
    std::map<std::string, Change> m_unwritten; ///< changes that no write has carried to the file yet
};

} // namespace lumaphone
