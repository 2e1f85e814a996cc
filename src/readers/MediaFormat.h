// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "readers/ByteSource.h"

/// Who reads a media file's tags.
enum class MediaFamily {
    None,
    Mpeg,
    Flac,
    Vorbis,
    Opus,
    OggFlac,
    Speex,
    Wav,
    Aiff,
    Mp4,
    Asf,
    Ape,
    WavPack,
    Musepack,
    TrueAudio,
    Libav, ///< everything else that is known: libavformat
};

/// What the first bytes of a media file tell.
struct MediaFormat
{
    MediaFamily family = MediaFamily::None;
    /// libavformat's name for it; null when that library could add nothing.
    const char *demuxer = nullptr;
};

/// Goes by the contents alone. Only formats that hold their media themselves are known here:
/// playlists and scripts, which name other files, are no media files.
MediaFormat mediaFormatOf(ByteSource &source);
