// The forms of a product as records of a printer's form list, in the product's order, and custom sizes behind them.
#pragma once

#include <span>
#include <vector>

#include <tvcore/productdata.h>

#include "complugins/customforms.h"
#include "complugins/formsinforecord.h"
#include "complugins/papercache.h"

[[nodiscard]] std::vector<FormsInfoRecord> MakeFormList(const ProductData& product,
                                                        std::span<const CustomForms::Size> customSizes = {});

// The custom sizes of the user that this process works for. Throws TavlenComException when they cannot all be read.
[[nodiscard]] CustomForms::Walk WalkCustomSizes();

// With those custom sizes: inside the spooler there are none.
[[nodiscard]] std::vector<FormsInfoRecord> MakeFormListOfUser(const ProductData& product);

// What an application may choose of a form list, under the names that people see: all forms but the unlisted ones
// (type 25007).
[[nodiscard]] std::vector<PaperCache::Paper> ListPapers(std::span<const FormsInfoRecord> forms);

// The display name of the paper in the trays. Nobody asks them: they are taken to hold the printer's default form.
[[nodiscard]] CXString LoadedPaper(const ProductData& product);
