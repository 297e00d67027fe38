// ProductStringLoader: the texts of a product, by number.
//
// Made anew at each request by its user, who then says whose texts are in force (TextResourceLoader::Initialize).
// The library is delay-loaded (tvcore/tvcoreapi.h).
#pragma once

#include <windows.h>

#include <tvcore/productdata.h>
#include <tvcore/tvcoreapi.h>
#include <tvutil/cxstring.h>

#include <cstdint>

class TVCORE_API ProductStringLoader
{
public:
    explicit ProductStringLoader(ProductData::ValueEnum controllerFamily);

    // Empty when the product in force has no such text, or when none is in force.
    [[nodiscard]] CXString LoadStringW(std::int32_t number) const;

    // The family that the texts are asked for. A printer model holds the texts of its own family only, so it takes no
    // part in the choice.
    [[nodiscard]] ProductData::ValueEnum GetControllerFamily() const;

private:
    ProductData::ValueEnum m_controllerFamily;
};
