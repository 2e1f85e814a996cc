// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariantMap>

#include <vector>

/// Which image properties somebody wants of every file, so that the others need not be read, sent
/// and kept.
struct ImageWish
{
    struct Tag
    {
        QString category; ///< "{Exif}" ...; empty for the top level
        QString tag;
    };

    std::vector<Tag> tags; ///< none: all there are

    bool isAll() const { return tags.empty(); }
    /// What is wanted of all that a file has, and as much besides as tells a file or a category
    /// that has something from one that has nothing.
    QVariantMap of(const QVariantMap &all) const;
};
