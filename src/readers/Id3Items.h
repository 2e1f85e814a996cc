// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MediaReading.h"

#include <taglib/id3v1tag.h>
#include <taglib/id3v2tag.h>
#include <taglib/tfile.h>

/// The tags of an ID3 block; nothing for null. The block of the first version ends the file.
void addId3v1Items(TagLib::File &file, const TagLib::ID3v1::Tag *tag, MediaReading &reading);
void addId3v2Items(const TagLib::ID3v2::Tag *tag, MediaReading &reading);
