// TVCORE_API, on the exported classes: the platform's export mark inside the core library and the import mark in its
// users. The floors below the library only read declarations and call what is inline: they need no mark.
#pragma once

#ifndef TVCORE_API
#define TVCORE_API
#endif
