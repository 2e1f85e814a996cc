// SPDX-License-Identifier: GPL-3.0-or-later
// Keyed archives of strangers: rollback logs and presets. Every input that opens is asked for
// everything in every way.
#include "platform/ArchiveSample.h"
#include "platform/ArchiveWalk.h"

extern "C" size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t maxSize);

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // What a pass may do at most takes too long for a fuzzer; the tests go that far.
    constexpr qsizetype kObjects = 100;
    const QByteArray file(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const ArchiveWalk walk(file, kObjects);
    const auto limit = static_cast<qsizetype>(size) * 30 + (40 << 20);
    if (walk.deepest >= 32 || walk.units > limit)
        __builtin_trap();
    return 0;
}

/// Most random bytes are no archive at all, so mutations start from one that opens.
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t maxSize,
                                          unsigned int seed)
{
    if (size < 40 || seed % 1000 == 0) {
        const QByteArray sample = ArchiveSample::fileOf({ArchiveSample::filled()});
        size = std::min(static_cast<size_t>(sample.size()), maxSize);
        std::copy_n(sample.constData(), size, reinterpret_cast<char *>(data));
    }
    return LLVMFuzzerMutate(data, size, maxSize);
}
