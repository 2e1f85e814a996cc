// SPDX-License-Identifier: GPL-3.0-or-later
#include "FuzzedWalk.h"
#include "readers/CodedPicture.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    constexpr int kEdge = 256;
    CountingSource source(
        QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
    const CodedPicture picture = codedPicture(source, kEdge);
    if (picture.columns < 1 ||
        (!picture.tiles.empty() && (picture.width < 1 || picture.height < 1)))
        std::abort();
    return fuzzWalk(walkBmff, data, size);
}
