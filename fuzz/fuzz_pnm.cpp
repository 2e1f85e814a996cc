// SPDX-License-Identifier: GPL-3.0-or-later
#include "FuzzedWalk.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    return fuzzWalk(readPnmHeader, data, size);
}
