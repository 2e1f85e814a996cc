// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

/// The image tags on offer: categories in their order, and the tags of each. A category is stored
/// by the title that people see ("Exif Aux") and found in a file's metadata by its key
/// ("{ExifAux}").
namespace EXIFSupport {

/// Keys of the 14 categories.
QStringList categories();
QString titleForCategory(const QString &key);
QString categoryForTitle(const QString &title);
/// Empty for an unknown key.
QStringList tagsForCategory(const QString &key);

} // namespace EXIFSupport
