// SPDX-License-Identifier: GPL-3.0-or-later
#include "helper/LibavModule.h"

#include "readers/LibavFile.h"

#include <cstdio>
#include <dlfcn.h>
#include <filesystem>

namespace {

constexpr char kModule[] = "tavrin-libav.so";
constexpr char kEntry[] = "tavrinReadWithLibav";
using Entry = decltype(&tavrinReadWithLibav);

/// Null when the module is not where it belongs; said once.
Entry loaded()
{
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    const std::string path = (program.parent_path() / kModule).string();
    void *const module = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    void *const entry = module != nullptr ? ::dlsym(module, kEntry) : nullptr;
    if (entry == nullptr)
        std::fprintf(stderr,
                     "tavrin-metadata: most films cannot be read; please install Tavrin "
                     "again: %s\n",
                     ::dlerror());
    return reinterpret_cast<Entry>(entry);
}

} // namespace

std::optional<MediaReading> readWithLibav(ByteSource &source, const char *demuxer)
{
    static const Entry entry = loaded();
    MediaReading reading;
    if (entry == nullptr || !entry(source, demuxer, reading))
        return {};
    return reading;
}
