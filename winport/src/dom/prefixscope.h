// PrefixScope<Value>: what namespace prefixes are bound to while a walk goes down and up a tree.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace winport::dom
{

template <class Value>
class PrefixScope
{
public:
    void Enter()
    {
        m_frames.push_back(m_bindings.size());
    }

    // Takes back what was bound since the matching Enter.
    void Leave()
    {
        for (const std::size_t start = m_frames.back(); m_bindings.size() > start; m_bindings.pop_back())
            m_latest.find(m_bindings.back().prefix)->second = m_bindings.back().shadowed;
        m_frames.pop_back();
    }

    void Bind(std::string_view prefix, Value value)
    {
        const auto place = m_latest.try_emplace(std::string(prefix), kNone).first;
        m_bindings.push_back(Binding{place->first, std::move(value), place->second});
        place->second = m_bindings.size() - 1;
    }

    // Null for a prefix that is not bound. Valid until the next Bind or Leave.
    const Value* Find(std::string_view prefix) const
    {
        const auto place = m_latest.find(prefix);
        return place != m_latest.end() && place->second != kNone ? &m_bindings[place->second].value : nullptr;
    }

    // Whether the prefix was bound since the last Enter.
    bool IsBoundHere(std::string_view prefix) const
    {
        const auto place = m_latest.find(prefix);
        return place != m_latest.end() && place->second != kNone && place->second >= m_frames.back();
    }

    // The innermost visible prefix whose value satisfies the predicate, or null.
    template <class Predicate>
    const std::string_view* FindPrefix(Predicate&& accepts) const
    {
        for (std::size_t at = m_bindings.size(); at-- > 0;)
        {
            const Binding& binding = m_bindings[at];
            if (m_latest.find(binding.prefix)->second == at && accepts(binding.prefix, binding.value))
                return &binding.prefix;
        }
        return nullptr;
    }

private:
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    struct Hash
    {
        using is_transparent = void;

        std::size_t operator()(std::string_view text) const
        {
            return std::hash<std::string_view>()(text);
        }
    };

    struct Binding
    {
        std::string_view prefix; // the key of m_latest
        Value value;
        std::size_t shadowed = 0;
    };

    std::vector<Binding> m_bindings;
    std::vector<std::size_t> m_frames;
    std::unordered_map<std::string, std::size_t, Hash, std::equal_to<>> m_latest; // prefix -> index in m_bindings
};

} // namespace winport::dom
