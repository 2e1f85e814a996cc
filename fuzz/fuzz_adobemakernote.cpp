// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/AdobeMakerNote.h"

#include <cstdint>
#include <cstdlib>

/// The structure holds the note and little more than the place it had in the camera's file.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    constexpr qsizetype kMost = 4 * 1024 * 1024 + 1024;
    const QByteArray block(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    if (tiffOfAdobeMakerNote(block, "Canon").size() > kMost + block.size())
        std::abort();
    return 0;
}
