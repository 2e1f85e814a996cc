// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MediaReading.h"

#include <taglib/aifffile.h>
#include <taglib/infotag.h>

/// An AIFF file that also gives its text chunks.
class AiffFile final : public TagLib::RIFF::AIFF::File
{
public:
    using TagLib::RIFF::AIFF::File::File;

    void addTextItems(MediaReading &reading);
};

/// The INFO list of a WAV file; nothing for null.
void addRiffInfoItems(const TagLib::RIFF::Info::Tag *tag, MediaReading &reading);

/// Makes TagLib read INFO lists as UTF-8 or else Latin-1; they name no character set.
void useTextOfUnknownSet();
