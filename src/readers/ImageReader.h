// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/ImageWish.h"

#include <QByteArray>
#include <QVariantMap>

#include <optional>

/// The properties of one image file, or those of them that are wished for: top-level keys
/// ("PixelWidth") and one level of dictionaries
/// ("{Exif}"). Goes by the contents of the file, never by its name; opens no other file. Nothing
/// when no property can be read. Never throws. Not for the process that holds a batch: a hostile
/// file may crash or stall the libraries underneath. Any thread, one file at a time a process.
std::optional<QVariantMap> readImageProperties(const QByteArray &path, const ImageWish &wish = {});
