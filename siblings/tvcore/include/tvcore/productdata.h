// ProductData: what is known of the bound printer's product.
#pragma once

#include <windows.h>

class ProductData
{
public:
    // Values of the feature data model that describe a product.
    enum ValueEnum : ULONG
    {
        ControllerFamilyUnknown = 5001, // until a product is known
        ControllerFamilyXps = 8430,
        ControllerFamilyMonochrome = 8431,
        ControllerFamilyColor = 8434,
    };
};
