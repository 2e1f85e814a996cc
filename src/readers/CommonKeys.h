// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLatin1String>

#include <span>

/// What one stored tag means: a common key, or one of the four numbers below.
struct TagMeaning
{
    QLatin1String key;
    QLatin1String meaning;
};

/// A table for one metadata format. Of two rows with one meaning, the later one counts.
using TagMeanings = std::span<const TagMeaning>;

namespace CommonKeys {

inline constexpr QLatin1String kType("type");

/// Meanings that go into the items "trkn" and "disk". A text "3/12" states both numbers.
inline constexpr QLatin1String kTrack("#track");
inline constexpr QLatin1String kTrackTotal("#tracks");
inline constexpr QLatin1String kDisc("#disc");
inline constexpr QLatin1String kDiscTotal("#discs");

TagMeanings id3v2();
TagMeanings itunes();
TagMeanings quickTimeUserData();
/// Keys of the reverse-domain namespace, without its prefix.
TagMeanings quickTimeMetadata();
TagMeanings vorbis();
TagMeanings asf();
TagMeanings riffInfo();
TagMeanings aiffText();
TagMeanings ape();
/// The names that libavformat gives to tags, in upper case, for containers that it reads.
TagMeanings matroska();
TagMeanings generic();

} // namespace CommonKeys
