// The spooler's standard media numbers, as values of the data model.
#pragma once

#include <windows.h>

#include <cstdint>

#include <tvcore/datamodelids.h>

// Any other number is what it is.
constexpr std::int32_t FoldStandardMediaNumber(std::int32_t id) noexcept
{
    switch (id)
    {
    case DMMEDIA_STANDARD:
        return DataModelIds::Value::MediaPlain;
    case DMMEDIA_TRANSPARENCY:
        return DataModelIds::Value::MediaTransparency;
    case DMMEDIA_GLOSSY:
        return DataModelIds::Value::MediaCardstockGlossy;
    default:
        return id;
    }
}
