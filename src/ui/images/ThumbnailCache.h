// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/TFileURL.h"

#include <QByteArray>
#include <QImage>

/// The small pictures of files that the programs of a desktop share: PNG files in a folder of the
/// user's cache, named after the file's address, each with the address and the modification time of
/// the file that it shows. Immutable; may be used from any thread, and waits for the disk.
class ThumbnailCache
{
public:
    /// The user's own, under $XDG_CACHE_HOME.
    static ThumbnailCache standard();
    /// folder is the one that holds "normal", "large" and so on; made when something is stored.
    explicit ThumbnailCache(QByteArray folder);

    /// Length of a side, in pixels, of the smallest size kept that is at least as large; the
    /// largest one when there is none.
    static int edgeFor(int pixels);
    /// The picture at that edge, else a larger one scaled down; null when there is none, or it was
    /// made of another file or of an older state of it.
    QImage find(const TFileURL &file, qint64 modifiedSeconds, int edge) const;
    /// Keeps a picture that fits the edge; false when that is impossible, or the file lies in the
    /// cache itself.
    bool store(const TFileURL &file, qint64 modifiedSeconds, int edge, const QImage &image) const;

private:
    QByteArray pathFor(const TFileURL &file, QByteArrayView size) const;

    QByteArray m_folder;
};
