// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariant>

#include <vector>

/// One stored tag of an audio or video file, as its format has it.
struct MediaItem
{
    QString format;    ///< the metadata format that holds it: "id3v2", "itunes", "vorbis" ...
    QVariant key;      ///< a text, or the four bytes of a code as an unsigned number
    QString commonKey; ///< what the tag means in every format ("title"); empty when it has none
    QVariant value;    ///< text, number or bytes
};

/// What one audio or video file says of itself. Items come format by format; of two that mean the
/// same, the later one counts.
struct MediaReading
{
    std::vector<MediaItem> items;
    double duration = 0; ///< in seconds; 0 when the file does not tell
};
