// SPDX-License-Identifier: GPL-3.0-or-later
#include "metadata/ID3AVSupport.h"

#include <iterator>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kTags[] = {
    "title"_L1,        "creator"_L1,       "subject"_L1,      "description"_L1,
    "publisher"_L1,    "contributor"_L1,   "creationDate"_L1, "lastModifiedDate"_L1,
    "type"_L1,         "format"_L1,        "identifier"_L1,   "source"_L1,
    "language"_L1,     "relation"_L1,      "location"_L1,     "copyrights"_L1,
    "albumName"_L1,    "author"_L1,        "artist"_L1,       "make"_L1,
    "model"_L1,        "software"_L1,      "track"_L1,        "numberOfTracks"_L1,
    "disk"_L1,         "numberOfDisks"_L1, "duration"_L1,     "durationHMS"_L1,
    "creationDate+"_L1};

} // namespace

QStringList ID3AVSupport::tags()
{
    return {std::begin(kTags), std::end(kTags)};
}
