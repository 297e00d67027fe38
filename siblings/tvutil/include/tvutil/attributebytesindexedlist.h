// AttributeBytesIndexedList: attributes by feature, to read and to edit.
//
// Keeps the order in which the attributes were stored, and those whose kind nobody here knows. Where a feature is
// stored twice the first one counts; the other is kept. Copies are cheap until one of them is edited: lists come out
// of a cache that the whole process shares.
//
// One thread at a time. Pointers into the list are valid until its next change.
#pragma once

#include <cstddef>
#include <memory>

#include <tvutil/attributebytesids.h>
#include <tvutil/attributebyteslistvalue.h>
#include <tvutil/attributebytesoptionvalue.h>
#include <tvutil/attributebytesvalue.h>

class AttributeBytesRawList;

class TVUTIL_API AttributeBytesIndexedList
{
public:
    AttributeBytesIndexedList();
    AttributeBytesIndexedList(const AttributeBytesIndexedList& other);
    AttributeBytesIndexedList& operator=(const AttributeBytesIndexedList& other);
    virtual ~AttributeBytesIndexedList();

    // With an index a feature is looked up, without one it is searched for: for lists that are read once. The answers
    // are the same.
    virtual void SetIndexed(bool isIndexed);

    // Replaces the content. False, with an empty list, when an attribute runs past the end: none of it is believed.
    bool ImportFromRawList(const AttributeBytesRawList& list);

    [[nodiscard]] std::size_t GetCount() const noexcept;
    [[nodiscard]] AttributeBytesFeatureId GetFeature(std::size_t position) const; // std::out_of_range
    [[nodiscard]] const AttributeBytesValue& GetValue(std::size_t position) const;

    // Null when the list has no such feature.
    [[nodiscard]] const AttributeBytesValue* GetAttributeBytes(AttributeBytesFeatureId feature) const noexcept;
    // The attributes inside a collection: the first level of a list value. Null when the feature is absent, is no list,
    // has no level, or its first level cannot be read.
    [[nodiscard]] std::unique_ptr<AttributeBytesIndexedList> GetCollection(AttributeBytesFeatureId feature) const;

    // Replaces the first one of the feature in its place, or appends. Throws std::length_error for more than 65,535
    // bytes.
    void SetAttributeBytes(AttributeBytesFeatureId feature, AttributeBytesValue value);
    void SetAttributeBytes(AttributeBytesFeatureId feature, const AttributeBytesOptionValue& value);
    void SetAttributeBytes(AttributeBytesFeatureId feature, const AttributeBytesListValue& value);
    // The list becomes what is inside the collection: the first level of its list value. Further levels, which a
    // collection should not have, and the flags of a list value that is there stay.
    void SetCollection(AttributeBytesFeatureId feature, const AttributeBytesIndexedList& inside);
    // Every one of the feature; whether there was one.
    bool RemoveAttributeBytes(AttributeBytesFeatureId feature);

private:
    struct Content;
    Content& Edit();

    std::shared_ptr<Content> m_content; // shared with copies until edited
    bool m_isIndexed = false;
};
