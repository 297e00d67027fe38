// The forms of a product as records of a printer's form list, in the product's order.
#pragma once

#include <vector>

#include <tvcore/productdata.h>

#include "complugins/formsinforecord.h"

[[nodiscard]] std::vector<FormsInfoRecord> MakeFormList(const ProductData& product);
