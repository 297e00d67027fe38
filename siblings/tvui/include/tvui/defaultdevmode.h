// The devmode that the driver makes of nothing: the product's defaults. The only maker of new devmodes.
//
// Behind the public part lies the core driver's private part, all of it at its defaults but the driver's own size
// field, and behind that the maker's part (complugins/oemdevmode.h). Its property bag holds the persistent attributes
// from the beginning, since whoever changes settings later changes them in there: the model's defaults of the
// document's features, and the printer's paper list.
#pragma once

#include <windows.h>

#include <cstddef>

#include <tvcore/productdata.h>
#include <tvutil/bytebuffer.h>
#include <tvutil/cxstring.h>

struct FormsInfoRecord;

inline constexpr WORD kDriverDevmodeVersion = 0x0100; // dmDriverVersion

// dmSize + dmDriverExtra bytes. A printer name that does not fit dmDeviceName is cut.
[[nodiscard]] ByteBuffer MakeDefaultDevmode(const ProductData& product, const CXString& printerName);

// Its public part alone; dmDriverExtra is that of the whole.
[[nodiscard]] DEVMODEW MakeDefaultPublicDevmode(const ProductData& product, const CXString& printerName);
[[nodiscard]] std::size_t DefaultDevmodeSize(const ProductData& product);

// Makes the form the devmode's paper: number, size, name.
void SetDevmodePaper(DEVMODEW& devmode, const FormsInfoRecord& form) noexcept;

[[nodiscard]] bool IsColorProduct(const ProductData& product);
