#include <tvcore/pagesizedictionaryentry.h>

#include <tvcore/pagesizetable.h>

PageSizeDictionaryEntry::PageSizeDictionaryEntry(const PageSizeRow& row, const CXString& displayName)
    : m_type(row.type),
      m_valueId(static_cast<DataModelIds::tagValueEnum>(row.valueId),
                displayName.IsEmpty() ? CXString(row.optionName) : displayName),
      m_width(row.width, Dimension::Microns),
      m_length(row.length, Dimension::Microns),
      m_optionName(row.optionName),
      m_isKeyword(row.isKeyword)
{
}

const CXString& PageSizeDictionaryEntry::GetMsPageMediaSizeOptionName() const
{
    return m_optionName;
}

bool PageSizeDictionaryEntry::IsPredefinedMsOptionName() const
{
    return m_isKeyword;
}

const ValueId& PageSizeDictionaryEntry::GetValueId() const
{
    return m_valueId;
}

DataModelIds::PageSizeTypeEnum PageSizeDictionaryEntry::GetPageSizeType() const
{
    return m_type;
}

const Dimension& PageSizeDictionaryEntry::GetWidth() const
{
    return m_width;
}

const Dimension& PageSizeDictionaryEntry::GetLength() const
{
    return m_length;
}
