// The numbers that attribute bytes go by: namespaces, features and values of the feature data model.
//
// Types of their own, so that no call mixes them up. The utility library knows no feature by name; the data model's
// names for these numbers are in tvcore/datamodelids.h.
#pragma once

#include <cstdint>
#include <utility>

#include <tvutil/cxstring.h>

// One set of settings within the persistent attributes (tvutil/persistentattributes.h).
class AttributeBytesNameSpacesId
{
public:
    explicit constexpr AttributeBytesNameSpacesId(std::int32_t id) noexcept : m_id(id)
    {
    }

    [[nodiscard]] constexpr std::int32_t GetId() const noexcept
    {
        return m_id;
    }

    friend constexpr bool operator==(const AttributeBytesNameSpacesId&,
                                     const AttributeBytesNameSpacesId&) noexcept = default;

private:
    std::int32_t m_id;
};

// A feature. Implicit, so that the data model's enumeration is one as it stands.
class AttributeBytesFeatureId
{
public:
    constexpr AttributeBytesFeatureId(std::int32_t id) noexcept : m_id(id)
    {
    }

    [[nodiscard]] constexpr std::int32_t GetId() const noexcept
    {
        return m_id;
    }

    friend constexpr bool operator==(const AttributeBytesFeatureId&, const AttributeBytesFeatureId&) noexcept = default;
    friend constexpr bool operator<(const AttributeBytesFeatureId& left, const AttributeBytesFeatureId& right) noexcept
    {
        return left.m_id < right.m_id;
    }

private:
    std::int32_t m_id;
};

// A value of an option feature that the data model's catalogue has.
class AttributeBytesValueId
{
public:
    constexpr AttributeBytesValueId(std::int32_t id) noexcept : m_id(id)
    {
    }

    [[nodiscard]] constexpr std::int32_t GetId() const noexcept
    {
        return m_id;
    }

    friend constexpr bool operator==(const AttributeBytesValueId&, const AttributeBytesValueId&) noexcept = default;

private:
    std::int32_t m_id;
};

// A value that the catalogue does not have, a custom media type for one: it brings its name with it.
class AttributeBytesNewValueId
{
public:
    AttributeBytesNewValueId(std::int32_t id, CXString name) noexcept : m_id(id), m_name(std::move(name))
    {
    }

    [[nodiscard]] std::int32_t GetId() const noexcept
    {
        return m_id;
    }

    [[nodiscard]] const CXString& GetName() const noexcept
    {
        return m_name;
    }

private:
    std::int32_t m_id;
    CXString m_name;
};
