// The driver's own settings in a devmode: the persistent attributes in the property bag of the maker's part.
#pragma once

#include <tvcore/productdata.h>
#include <tvutil/bytebuffer.h>

// Gives the devmode (with a maker's part, laid out as the product's driver does it) the product's paper list, the
// devmode's own form always on it, and the product's defaults of the document's features when it has no settings.
// Settings that it has are kept, and so are all other entries of the bag; capabilities that cannot be read are not.
//
// The devmode stays as it is when its settings are of a later format, which is not ours to rewrite, or leave no room
// for even the own form.
void CompleteDriverSettings(const ProductData& product, ByteBuffer& devmode);
