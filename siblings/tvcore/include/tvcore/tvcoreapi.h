// TVCORE_API, on the exported classes: the platform's export mark inside the core library and the import mark in its
// users. The floors below the library only read declarations and call what is inline: they need no mark.
//
// The library is delay-loaded, so its classes have plain functions only, nothing virtual but a destructor, which is
// reached through an object that the library has made (constructors are out of line); and none of them is
// noexcept, on purpose: any may be the first that a module calls, which loads the library, and a load that fails is
// thrown (utilitiesstaticlib/dlldelayloader.h). scripts/check-floors.sh looks after that.
#pragma once

#ifndef TVCORE_API
#define TVCORE_API
#endif
