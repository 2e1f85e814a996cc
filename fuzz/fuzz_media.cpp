// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/Id3v2Places.h"
#include "readers/MatroskaInfo.h"
#include "readers/MediaFormat.h"
#include "readers/MemorySource.h"
#include "readers/Mp4Items.h"
#include "readers/MpegSync.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace {

constexpr qint64 kMostCoverBytes = 1 << 20;

void require(bool condition)
{
    if (!condition)
        std::abort();
}

} // namespace

/// Any bytes have a format or none, and as a film they hold nothing that is larger than the file.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto length = static_cast<qsizetype>(size);
    MemorySource source(QByteArray(reinterpret_cast<const char *>(data), length));
    mediaFormatOf(source);
    const Id3v2Places places = id3v2PlacesOf(source);
    for (const qint64 at : places.appended)
        require(at >= 0 && at < length);
    require(id3v2WithoutExtension(source, 0).size() <= length);
    const double seconds = durationOfManyRates(source, 0, length).value_or(0);
    require(std::isfinite(seconds) && seconds >= 0);
    require(mp4Cover(source, kMostCoverBytes).size() <= length);
    require(std::isfinite(matroskaEnd(source)));
    std::optional<MediaReading> reading = readMatroskaInfo(source);
    if (!reading)
        reading = readMp4(source);
    if (!reading)
        return 0;
    require(std::isfinite(reading->duration) && reading->duration >= 0);
    for (const MediaItem &item : reading->items) {
        require(!item.key.toString().isEmpty());
        require(item.commonKey.isEmpty() == (item.value.typeId() == QMetaType::QByteArray));
    }
    return 0;
}
