// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/ReaderVersions.h"

#include <exiv2/exiv2.hpp>
#include <taglib/taglib.h>
#if TAGLIB_MAJOR_VERSION >= 2
#include <taglib/tversionnumber.h>
#endif

namespace {

/// Before version 2 the library itself does not tell; what it was built against is close to it.
std::string tagLibVersion()
{
#if TAGLIB_MAJOR_VERSION >= 2
    return TagLib::runtimeVersion().toString().to8Bit();
#else
    std::string version =
        std::to_string(TAGLIB_MAJOR_VERSION) + '.' + std::to_string(TAGLIB_MINOR_VERSION);
    if (TAGLIB_PATCH_VERSION > 0)
        version += '.' + std::to_string(TAGLIB_PATCH_VERSION);
    return version;
#endif
}

} // namespace

std::string readerVersions()
{
    return "Exiv2 " + Exiv2::versionString() + "\nTagLib " + tagLibVersion() + '\n';
}
