// The forms of a product as records of a printer's form list, in the product's order, and custom sizes behind them.
#pragma once

#include <span>
#include <vector>

#include <tvcore/productdata.h>

#include "complugins/customforms.h"
#include "complugins/formsinforecord.h"

[[nodiscard]] std::vector<FormsInfoRecord> MakeFormList(const ProductData& product,
                                                        std::span<const CustomForms::Size> customSizes = {});

// With the custom sizes of the user that this process works for: inside the spooler it is none.
[[nodiscard]] std::vector<FormsInfoRecord> MakeFormListOfUser(const ProductData& product);
