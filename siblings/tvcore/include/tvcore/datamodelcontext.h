// DataModelContext: the data model, as the devmode layer sees it while it brings a devmode's settings in.
//
// An interface of the core library, nothing that must be linked. The data model implements it.
#pragma once

#include <windows.h>

#include <cstdint>

#include <tvcore/datamodelids.h>
#include <tvutil/cxstring.h>
#include <tvutil/dimension.h>

class DataModelContext
{
public:
    // The devmode whose settings these are; the data model keeps it alive. Null when there is none.
    [[nodiscard]] virtual DEVMODEW* GetDevmode() = 0;

    // Features are DataModelIds::Feature. An option is set to a DataModelIds::Value, an integer to a number as the
    // devmode has it. What these throw ends the transfer.
    virtual void SetOptionValue(std::int32_t feature, std::int32_t valueId) = 0;
    virtual void SetIntegerValue(std::int32_t feature, std::int32_t value) = 0;

    // The paper, which is one of the printer's forms. A value id of 0: of a size that has none.
    struct PageSize
    {
        DataModelIds::PageSizeTypeEnum type;
        std::int32_t valueId;
        std::uint16_t paperId;
        Dimension width;
        Dimension length;
        CXString name;

        friend bool operator==(const PageSize& left, const PageSize& right) = default;
    };
    virtual void SetPageSize(const PageSize& pageSize) = 0;

protected:
    DataModelContext() = default;
    DataModelContext(const DataModelContext&) = default;
    DataModelContext& operator=(const DataModelContext&) = default;
    ~DataModelContext() = default; // never deleted by way of this interface
};
