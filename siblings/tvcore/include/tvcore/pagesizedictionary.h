// PageSizeDictionary: the sizes of paper that have a name in the Print Schema or in the private namespace.
//
// A constant dictionary (tvcore/pagesizetable.h): every instance holds the same entries, in the same order. References
// to entries are valid as long as the dictionary; reading is safe on every thread.
// The library is delay-loaded (tvcore/tvcoreapi.h).
#pragma once

#include <tvcore/customsizenumber.h>
#include <tvcore/datamodelids.h>
#include <tvcore/pagesizedictionaryentry.h>
#include <tvcore/tvcoreapi.h>
#include <tvutil/cxstring.h>
#include <tvutil/dimension.h>

#include <cstdint>
#include <functional>
#include <vector>

class ProductStringLoader;

class TVCORE_API PageSizeDictionary
{
public:
    using EntryRefs = std::vector<std::reference_wrapper<const PageSizeDictionaryEntry>>;

    PageSizeDictionary();
    // Display names are the product's texts under the entries' value ids, where it has them. The loader is used during
    // the call only.
    explicit PageSizeDictionary(const ProductStringLoader& loader);
    ~PageSizeDictionary();
    PageSizeDictionary(const PageSizeDictionary&) = delete;
    PageSizeDictionary& operator=(const PageSizeDictionary&) = delete;

    // The entries whose width and length are the given ones, each to less than half a millimetre; a sheet turned by 90
    // degrees is another one. Several names may stand for one size.
    [[nodiscard]] EntryRefs GetPageSizeEntryRefs(const Dimension& width, const Dimension& length) const;
    // The entries of a type; none for a type that is not in the dictionary.
    [[nodiscard]] EntryRefs GetPageSizeEntryRefs(DataModelIds::PageSizeTypeEnum type) const;

    // The paper number of a named custom size. Inline: the device capabilities, below this library, need it too.
    [[nodiscard]] static std::uint16_t GetCustomSizeMsId(const CXString& name)
    {
        return CustomSizeNumber(name);
    }

private:
    std::vector<PageSizeDictionaryEntry> m_entries;
};
