// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/ReaderVersions.h"

extern "C" {
#include <libavutil/avutil.h>
}

std::string libavVersion()
{
    return ::av_version_info();
}
