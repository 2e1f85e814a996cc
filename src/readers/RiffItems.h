// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MediaReading.h"

#include <taglib/aifffile.h>
#include <taglib/wavfile.h>

/// An AIFF file that gives its text chunks, too.
class AiffFile final : public TagLib::RIFF::AIFF::File
{
public:
    using TagLib::RIFF::AIFF::File::File;

    /// Of text and ID3v2, the kind whose first chunk comes first.
    void addItems(MediaReading &reading);

private:
    void addTextItems(MediaReading &reading);
};

/// A WAV file that knows in which order its tags stand.
class WavFile final : public TagLib::RIFF::WAV::File
{
public:
    using TagLib::RIFF::WAV::File::File;

    /// Of the INFO list and ID3v2, the one whose chunk comes first.
    void addItems(MediaReading &reading);

private:
    bool isInfoList(unsigned int chunk);
};

/// Makes TagLib read INFO lists as UTF-8 or else Latin-1; they name no character set.
void useTextOfUnknownSet();
