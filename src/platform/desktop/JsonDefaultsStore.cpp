#include "platform/desktop/JsonDefaultsStore.h"

#include "base/AtomicFile.h"
#include "base/FileLock.h"
#include "base/Json.h"
#include "platform/Clock.h"

#include <QCoroTask>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace lumaphone {

namespace {

QString resolved(const QString &path)
{
    const QString target = QFileInfo(path).canonicalFilePath();
    return target.isEmpty() ? path : target;
}

QString settingsLockPath(const QString &path)
{
    return path + QStringLiteral(".lock");
}

/// The object in the file; none if there is no file. Throws LocalizedError for anything else.
std::optional<json::Value> readObject(const QString &path)
{
    const std::optional<QByteArray> bytes = readFile(path);
    if (!bytes) {
        return std::nullopt;
    }
    json::Value value = json::parse(*bytes);
    if (!value.is_object()) {
        throw json::DecodingError(QStringLiteral("%1 不是 JSON 物件。").arg(path));
    }
    return value;
}

/// The same for the owner of the lock who is about to replace the file: what cannot be read is kept under
/// another name and replaced by `fallback`. Throws FileError if that fails.
json::Value readOrKeepAside(const QString &path, const json::Value &fallback)
{
    try {
        return readObject(path).value_or(json::Value::object());
    } catch (const LocalizedError &) {
        keepAside(path);
        return fallback;
    }
}

json::Value jsonValue(const DefaultsValue &value)
{
    if (const auto *text = std::get_if<QString>(&value)) {
        return json::fromText(*text);
    }
    if (const auto *number = std::get_if<double>(&value)) {
        return *number;
    }
    if (const auto *integer = std::get_if<std::int64_t>(&value)) {
        return *integer;
    }
    return std::get<bool>(value);
}

std::optional<DefaultsValue> defaultsValue(const json::Value &value)
{
    if (value.is_string()) {
        return QString::fromStdString(value.get_ref<const std::string &>());
    }
    if (value.is_boolean()) {
        return value.get<bool>();
    }
    if (value.is_number_unsigned() && value.get<std::uint64_t>() > std::uint64_t {INT64_MAX}) {
        return value.get<double>();
    }
    if (value.is_number_integer()) {
        return value.get<std::int64_t>();
    }
    if (value.is_number_float()) {
        return value.get<double>();
    }
    return std::nullopt;
}

void apply(json::Value &values, const std::string &key, const json::Value &change)
{
    if (change.is_null()) {
        values.erase(key);
    } else {
        values[key] = change;
    }
}

} // namespace

JsonDefaultsStore::JsonDefaultsStore(const QString &path)
    : JsonDefaultsStore(path, nullptr)
{
}

JsonDefaultsStore::JsonDefaultsStore(const QString &path, std::shared_ptr<Clock> clock)
    : m_path(resolved(path))
    , m_clock(std::move(clock))
    , m_values(json::Value::object())
{
    try {
        m_values = readObject(m_path).value_or(m_values);
    } catch (const LocalizedError &) {
        // The file stays as it is until something is set.
    }
}

JsonDefaultsStore::~JsonDefaultsStore()
{
    if (m_clock && !m_unwritten.empty()) {
        tryToWrite();
    }
}

std::optional<DefaultsValue> JsonDefaultsStore::object(const QString &key) const
{
    const auto found = m_values.find(json::fromText(key));
    return found == m_values.end() ? std::nullopt : defaultsValue(*found);
}

void JsonDefaultsStore::setObject(const QString &key, const DefaultsValue &value)
{
    change(key, jsonValue(value));
}

void JsonDefaultsStore::removeObject(const QString &key)
{
    change(key, nullptr);
}

void JsonDefaultsStore::change(const QString &key, Change change)
{
    const std::string name = json::fromText(key);
    apply(m_values, name, change);
    m_unwritten[name] = std::move(change);
    if (m_clock) {
        gather();
    } else {
        tryToWrite();
    }
}

void JsonDefaultsStore::gather()
{
    m_lastGathered = m_clock->monotonic();
    if (!m_firstGathered) {
        m_firstGathered = m_lastGathered;
    }
    if (m_lastGathered - *m_firstGathered >= longestDelay) {
        tryToWrite(); // a busy main thread has not been woken in time
    } else if (!m_isWaiting) {
        wait();
    }
}

std::chrono::nanoseconds JsonDefaultsStore::dueTime() const
{
    return std::min<std::chrono::nanoseconds>(m_lastGathered + rest, *m_firstGathered + longestDelay);
}

void JsonDefaultsStore::wait()
{
    m_isWaiting = true;
    QCoro::connect(m_clock->sleepFor(dueTime() - m_clock->monotonic()), &m_life, [this] {
        m_isWaiting = false;
        if (m_firstGathered && m_clock->monotonic() >= dueTime()) {
            tryToWrite();
        } else if (m_firstGathered) {
            wait();
        }
    });
}

void JsonDefaultsStore::tryToWrite()
{
    m_firstGathered.reset();
    try {
        write();
    } catch (const FileError &) {
        // The change stays in m_unwritten and goes with the next.
    }
}

void JsonDefaultsStore::write()
{
    createFolder(QFileInfo(m_path).absolutePath());
    const FileLock lock = FileLock::wait(settingsLockPath(m_path));
    // Others may have written since: only our own changes go on top of what is there now.
    json::Value values = readOrKeepAside(m_path, m_values);
    for (const auto &[key, change] : m_unwritten) {
        apply(values, key, change);
    }
    removeInterruptedReplacements(m_path);
    replaceFile(m_path, json::pretty(values) + '\n', Durability::flushed);
    m_values = std::move(values);
    m_unwritten.clear();
}

} // namespace lumaphone
