// What of an application's devmode the driver takes over into its own.
#pragma once

#include <windows.h>

#include <cstddef>
#include <span>

#include <tvcore/productdata.h>
#include <tvutil/bytebuffer.h>

// Where dmFields ends: an application's devmode that is shorter says nothing.
inline constexpr std::size_t kSmallestInput = offsetof(DEVMODEW, dmFields) + sizeof(DWORD);

// The public fields (DM_...) that the driver heeds.
[[nodiscard]] DWORD SupportedFields(const ProductData& product);

// The fields that `input` claims and the product can do replace those of `devmode`, which is the product's default
// (MakeDefaultDevmode); others stay. The maker's part is taken over, wherever it lies, when it is sound; the core
// driver's beside it when it is of the default's kind and size. The paper list becomes the product's, with the merged
// paper.
//
// `input` is a devmode of the platform's shape: dmSize, kSmallestInput at least, + dmDriverExtra bytes.
void MergeDevmode(const ProductData& product, std::span<const std::byte> input, ByteBuffer& devmode);
