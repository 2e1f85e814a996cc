// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <cstdio>
#include <malloc.h>
#include <unistd.h>

/// The bytes of this process that are in memory at the moment, without what it has given back.
inline qint64 residentBytes()
{
    malloc_trim(0);
    long pages = 0;
    if (FILE *const statm = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(statm, "%*d %ld", &pages) != 1)
            pages = 0;
        std::fclose(statm);
    }
    return qint64{pages} * sysconf(_SC_PAGESIZE);
}
