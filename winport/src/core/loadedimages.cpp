#include "core/loadedimages.h"

#include <cstring>

#include <dlfcn.h>
#include <link.h>
#include <strings.h>

namespace winport
{
namespace
{

struct Extent
{
    ElfW(Addr) begin = 0;
    ElfW(Addr) end = 0;
};

// From the first loaded segment to the last one.
Extent ExtentOf(const dl_phdr_info& info)
{
    Extent extent;
    bool first = true;
    for (const ElfW(Phdr)* header = info.dlpi_phdr; header != info.dlpi_phdr + info.dlpi_phnum; ++header)
    {
        if (header->p_type != PT_LOAD)
            continue;
        const ElfW(Addr) begin = info.dlpi_addr + header->p_vaddr;
        if (first)
            extent.begin = begin;
        extent.end = begin + header->p_memsz;
        first = false;
    }
    return extent;
}

// The first image for which `matches(extent, path)` holds. The loader holds its lock meanwhile: nothing here throws or
// allocates.
template <class Predicate>
std::optional<LoadedImage> Find(Predicate matches) noexcept
{
    struct Search
    {
        Predicate& matches;
        std::optional<LoadedImage> found;
    };

    const auto visit = [](dl_phdr_info* info, std::size_t, void* context) noexcept -> int
    {
        auto& search = *static_cast<Search*>(context);
        const Extent extent = ExtentOf(*info);
        const char* const path = info->dlpi_name != nullptr ? info->dlpi_name : "";
        const std::size_t size = std::strlen(path) + 1;
        if (size > sizeof(LoadedImage::path) || !search.matches(extent, path))
            return 0;
        LoadedImage& image = search.found.emplace();
        image.module = reinterpret_cast<HMODULE>(extent.begin);
        std::memcpy(image.path, path, size);
        return 1;
    };

    Search search{matches, std::nullopt};
    dl_iterate_phdr(visit, &search);
    return search.found;
}

std::string_view BaseName(std::string_view path)
{
    return path.substr(path.rfind('/') + 1); // npos + 1 is 0
}

} // namespace

std::optional<LoadedImage> FindExecutable() noexcept
{
    return Find([](const Extent&, const char* path) { return *path == 0; });
}

std::optional<LoadedImage> FindImageAt(const void* address) noexcept
{
    const auto wanted = reinterpret_cast<ElfW(Addr)>(address);
    return Find([wanted](const Extent& extent, const char*) { return wanted >= extent.begin && wanted < extent.end; });
}

std::optional<LoadedImage> FindImage(HMODULE module) noexcept
{
    const auto wanted = reinterpret_cast<ElfW(Addr)>(module);
    return Find([wanted](const Extent& extent, const char*) { return wanted != 0 && wanted == extent.begin; });
}

std::optional<LoadedImage> FindImageByFile(const char* path) noexcept
{
    return ImageOf(LoaderReference(dlopen(path, RTLD_NOW | RTLD_NOLOAD)));
}

std::optional<LoadedImage> FindImageByBaseName(std::string_view name) noexcept
{
    const auto matches = [name](const Extent&, const char* path)
    {
        const std::string_view loaded = BaseName(path);
        return !loaded.empty() && loaded.size() == name.size() &&
               strncasecmp(loaded.data(), name.data(), name.size()) == 0;
    };
    return Find(matches);
}

void LoaderReferenceCloser::operator()(void* reference) const noexcept
{
    dlclose(reference);
}

LoaderReference Reference(const LoadedImage& image) noexcept
{
    return LoaderReference(dlopen(image.IsExecutable() ? nullptr : image.path, RTLD_NOW | RTLD_NOLOAD));
}

LoaderReference Load(const char* path) noexcept
{
    return LoaderReference(dlopen(path, RTLD_NOW | RTLD_LOCAL));
}

std::optional<LoadedImage> ImageOf(const LoaderReference& reference) noexcept
{
    link_map* map = nullptr;
    if (reference == nullptr || dlinfo(reference.get(), RTLD_DI_LINKMAP, &map) != 0)
        return std::nullopt;
    return FindImageAt(map->l_ld); // the dynamic section lies within the image
}

} // namespace winport
