// The modules that are mapped into this process, as the dynamic loader knows them.
//
// An image is told by the address of its first byte, which is its HMODULE. Asking never follows a pointer that a
// caller gave: a value that is no module is simply not found.
#pragma once

#include <windows.h>

#include <climits>
#include <memory>
#include <optional>
#include <string_view>

namespace winport
{

struct LoadedImage
{
    HMODULE module;
    char path[PATH_MAX]; // as the loader opened it; empty for the executable

    [[nodiscard]] bool IsExecutable() const noexcept
    {
        return path[0] == 0;
    }
};

std::optional<LoadedImage> FindExecutable() noexcept;
std::optional<LoadedImage> FindImageAt(const void* address) noexcept;
std::optional<LoadedImage> FindImage(HMODULE module) noexcept;
// By the file, whatever name it was loaded under; and by the last part of that name, ignoring case.
std::optional<LoadedImage> FindImageByFile(const char* path) noexcept;
std::optional<LoadedImage> FindImageByBaseName(std::string_view name) noexcept;

// One reference to a module that the dynamic loader counts.
struct LoaderReferenceCloser
{
    void operator()(void* reference) const noexcept;
};

using LoaderReference = std::unique_ptr<void, LoaderReferenceCloser>;

// A further reference; null when the image has gone meanwhile.
LoaderReference Reference(const LoadedImage& image) noexcept;
// Loads the file, or adds a reference to it; null when the loader refuses.
LoaderReference Load(const char* path) noexcept;

// The image behind a reference.
std::optional<LoadedImage> ImageOf(const LoaderReference& reference) noexcept;

} // namespace winport
