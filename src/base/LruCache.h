#pragma once

#include <cstddef>
#include <functional>
#include <list>
#include <optional>
#include <unordered_map>
#include <utility>

namespace lumaphone {

/// A map that keeps at most `capacity` entries: those used last. Every operation takes constant time.
template<typename Key, typename Value, typename Hash = std::hash<Key>> class LruCache
{
public:
    explicit LruCache(std::size_t capacity)
        : m_capacity(capacity)
    {
    }

    std::size_t size() const { return m_entries.size(); }
    std::size_t capacity() const { return m_capacity; }

    /// The value of a key, or none. A hit counts as a use.
    std::optional<Value> find(const Key &key)
    {
        const auto found = m_positions.find(key);
        if (found == m_positions.end()) {
            return std::nullopt;
        }
        markUsed(found->second);
        return found->second->second;
    }

    /// Sets the value of a key, which counts as a use, and then evicts what was not used for longest.
    void insert(const Key &key, Value value)
    {
        const auto found = m_positions.find(key);
        if (found != m_positions.end()) {
            found->second->second = std::move(value);
            markUsed(found->second);
            return;
        }
        m_entries.emplace_back(key, std::move(value));
        m_positions.emplace(key, std::prev(m_entries.end()));
        while (m_entries.size() > m_capacity) {
            m_positions.erase(m_entries.front().first);
            m_entries.pop_front();
        }
    }

private:
    using Entries = std::list<std::pair<const Key, Value>>; ///< least recently used first

    void markUsed(typename Entries::iterator entry) { m_entries.splice(m_entries.end(), m_entries, entry); }

    std::size_t m_capacity;
    Entries m_entries;
    std::unordered_map<Key, typename Entries::iterator, Hash> m_positions;
};

} // namespace lumaphone
