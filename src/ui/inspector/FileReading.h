// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/TFileItem.h"
#include "platform/MediaReading.h"
#include "platform/TMetadata.h"

#include <QImage>
#include <QMetaType>

#include <optional>

/// What the inspector wants to know of one file.
struct FileQuestion
{
    TFileItem file;
    int edge = 0;                 ///< of the square that the picture has to fill, in pixels
    bool wantsProperties = false; ///< of an image, because nobody has gathered them
};

/// What was found out about one file, as much as is known.
struct FileReading
{
    enum class Sort { Other, Image, Audio, Video };

    Sort sort = Sort::Other;
    QString kind;                 ///< in the user's language: "JPEG image"
    QImage picture;               ///< upright; null when there is none, or not yet
    TMetadataPtr imageProperties; ///< null when they were not asked for, or are not there yet
    TMetadataPtr tags;            ///< of audio and video
    std::optional<MediaReading> media;
    QString problem;      ///< why there is no more; empty when all is well
    bool isWhole = false; ///< no more will come
};

Q_DECLARE_METATYPE(FileReading)
