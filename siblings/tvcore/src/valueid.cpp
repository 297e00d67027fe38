#include <tvcore/valueid.h>

#include <utility>

ValueId::ValueId(DataModelIds::tagValueEnum value, CXString name) : m_value(value), m_name(std::move(name))
{
}

DataModelIds::tagValueEnum ValueId::GetValueEnum() const
{
    return m_value;
}

const CXString& ValueId::GetValueName() const
{
    return m_name;
}
