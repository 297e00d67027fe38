// ValueId: a value of the feature data model, with the name that goes with it.
//
// The library is delay-loaded (tvcore/tvcoreapi.h).
#pragma once

#include <tvcore/datamodelids.h>
#include <tvcore/tvcoreapi.h>
#include <tvutil/cxstring.h>

class TVCORE_API ValueId
{
public:
    explicit ValueId(DataModelIds::tagValueEnum value = DataModelIds::Value::Automatic, CXString name = CXString());

    [[nodiscard]] DataModelIds::tagValueEnum GetValueEnum() const;
    // Empty when the value has no name of its own.
    [[nodiscard]] const CXString& GetValueName() const;

    friend bool operator==(const ValueId& left, const ValueId& right)
    {
        return left.m_value == right.m_value && left.m_name == right.m_name;
    }

private:
    DataModelIds::tagValueEnum m_value;
    CXString m_name;
};
