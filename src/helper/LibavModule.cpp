// SPDX-License-Identifier: GPL-3.0-or-later
#include "helper/LibavModule.h"

#include "readers/LibavFile.h"
#include "readers/LibavPicture.h"
#include "readers/ReaderVersions.h"

#include <cstdio>
#include <dlfcn.h>
#include <filesystem>

namespace {

constexpr char kModule[] = "tavrin-libav.so";
constexpr char kReader[] = "tavrinReadWithLibav";
constexpr char kVersion[] = "tavrinLibavVersion";
constexpr char kDecoder[] = "tavrinDecodeWithLibav";

void complain()
{
    std::fprintf(stderr,
                 "tavrin-metadata: most films cannot be read; please install Tavrin again: %s\n",
                 ::dlerror());
}

/// Null when the module is not where it belongs; said once.
void *module()
{
    static void *const loaded = [] {
        std::error_code error;
        const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
        const std::string path = (program.parent_path() / kModule).string();
        void *const opened = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (opened == nullptr)
            complain();
        return opened;
    }();
    return loaded;
}

template <typename Entry>
Entry entryOf(const char *name)
{
    void *const entry = module() != nullptr ? ::dlsym(module(), name) : nullptr;
    if (module() != nullptr && entry == nullptr) // it is of another version
        complain();
    return reinterpret_cast<Entry>(entry);
}

} // namespace

std::optional<MediaReading> readWithLibav(ByteSource &source, const char *demuxer)
{
    static const auto entry = entryOf<decltype(&tavrinReadWithLibav)>(kReader);
    MediaReading reading;
    if (entry == nullptr || !entry(source, demuxer, reading))
        return {};
    return reading;
}

QImage decodeWithLibav(const CodedPicture &picture, int edge)
{
    static const auto entry = entryOf<decltype(&tavrinDecodeWithLibav)>(kDecoder);
    QImage image;
    if (entry != nullptr)
        entry(picture, edge, image);
    return image;
}

std::string libavVersion()
{
    const auto entry = entryOf<decltype(&tavrinLibavVersion)>(kVersion);
    std::string version;
    if (entry != nullptr)
        entry(version);
    return version;
}
