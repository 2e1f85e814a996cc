// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/FormatHeaders.h"
#include "readers/SourceDevice.h"

#include <QImageReader>

#include <algorithm>

namespace {

// Only these: other plug-ins may decode the whole picture to tell its size.
constexpr const char *kFormats[] = {"ico", "cur", "pbm", "pgm", "ppm", "xbm"};

bool isWanted(const QByteArray &format)
{
    return std::any_of(std::begin(kFormats), std::end(kFormats),
                       [&](const char *wanted) { return format == wanted; });
}

} // namespace

ImageFacts readQtHeader(ByteSource &source)
{
    ImageFacts facts;
    SourceDevice device(source);
    const QByteArray format = QImageReader::imageFormat(&device);
    const bool isEmptyIcon = (format == "ico" || format == "cur") && source.little(4, 2) == 0U;
    if (!isWanted(format) || isEmptyIcon)
        return facts;
    const QSize size = QImageReader(&device, format).size();
    facts.width = size.width();
    facts.height = size.height();
    return facts;
}
