// PageSizeDictionaryEntry: one size of paper, as the page-size dictionary knows it.
//
// The library is delay-loaded (tvcore/tvcoreapi.h).
#pragma once

#include <tvcore/datamodelids.h>
#include <tvcore/tvcoreapi.h>
#include <tvcore/valueid.h>
#include <tvutil/cxstring.h>
#include <tvutil/dimension.h>

struct PageSizeRow;

class TVCORE_API PageSizeDictionaryEntry
{
public:
    // The row is of the page-size table; without a display name the option name serves.
    PageSizeDictionaryEntry(const PageSizeRow& row, const CXString& displayName);

    // The option name of "PageMediaSize".
    [[nodiscard]] const CXString& GetMsPageMediaSizeOptionName() const;
    // Whether that name is a keyword of the Print Schema; if not it belongs to the private namespace.
    [[nodiscard]] bool IsPredefinedMsOptionName() const;

    // The value's name is the display name.
    [[nodiscard]] const ValueId& GetValueId() const;
    [[nodiscard]] DataModelIds::PageSizeTypeEnum GetPageSizeType() const;
    [[nodiscard]] const Dimension& GetWidth() const;
    [[nodiscard]] const Dimension& GetLength() const;

private:
    DataModelIds::PageSizeTypeEnum m_type;
    ValueId m_valueId;
    Dimension m_width;
    Dimension m_length;
    CXString m_optionName;
    bool m_isKeyword;
};
