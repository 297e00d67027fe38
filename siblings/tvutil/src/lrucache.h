// LruCache: values by key, up to a capacity; what was asked for longest ago goes first.
//
// Safe on every thread. Values are shared and constant: they outlive their place in the cache for as long as somebody
// holds them, and are copied and destroyed outside of the lock.
#pragma once

#include <cstddef>
#include <list>
#include <memory>
#include <unordered_map>
#include <utility>

#include "utilitiesstaticlib/slimlock.h"

template <class Key, class Value, class Hash = std::hash<Key>>
class LruCache
{
public:
    struct Counters
    {
        std::size_t hits = 0;
        std::size_t misses = 0;
        std::size_t entries = 0;
    };

    explicit LruCache(std::size_t capacity) noexcept : m_capacity(capacity)
    {
    }

    // Null when the key is unknown.
    [[nodiscard]] std::shared_ptr<const Value> Find(const Key& key)
    {
        const SlimLock::Guard guard(m_lock);
        const auto found = m_index.find(key);
        if (found == m_index.end())
        {
            ++m_misses;
            return nullptr;
        }
        ++m_hits;
        m_entries.splice(m_entries.begin(), m_entries, found->second);
        return found->second->second;
    }

    // Replaces the value of a key that is there already. Running out of memory leaves the cache as it was.
    void Add(const Key& key, std::shared_ptr<const Value> value)
    {
        Entries entry;
        entry.emplace_front(key, std::move(value));
        Entries gone; // destroyed behind the lock
        const SlimLock::Guard guard(m_lock);
        const auto [place, isNew] = m_index.try_emplace(key, entry.begin());
        if (!isNew)
            gone.splice(gone.begin(), m_entries, std::exchange(place->second, entry.begin()));
        m_entries.splice(m_entries.begin(), entry);
        if (m_entries.size() > m_capacity)
        {
            m_index.erase(m_entries.back().first);
            gone.splice(gone.begin(), m_entries, std::prev(m_entries.end()));
        }
    }

    // Forgets the entries and what was counted.
    void Clear() noexcept
    {
        Entries gone;
        const SlimLock::Guard guard(m_lock);
        m_index.clear();
        gone.swap(m_entries);
        m_hits = 0;
        m_misses = 0;
    }

    [[nodiscard]] Counters Count() const noexcept
    {
        const SlimLock::Guard guard(m_lock);
        return {m_hits, m_misses, m_entries.size()};
    }

private:
    using Entries = std::list<std::pair<const Key, std::shared_ptr<const Value>>>; // the last used one first

    const std::size_t m_capacity;
    mutable SlimLock m_lock;
    Entries m_entries;
    std::unordered_map<Key, typename Entries::iterator, Hash> m_index;
    std::size_t m_hits = 0;
    std::size_t m_misses = 0;
};
