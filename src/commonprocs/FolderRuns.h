// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/TFileURL.h"

#include <cstddef>

/// Files mostly come folder by folder: calls visit(folder, files) for all neighbours that share a
/// folder object. folderAt(index) gives a reference to it; files where it is null are passed over.
template <class FolderAt, class Visit>
void forEachFolderRun(std::size_t files, const FolderAt &folderAt, const Visit &visit)
{
    for (std::size_t first = 0; first < files;) {
        const TFolderPtr &folder = folderAt(first);
        std::size_t end = first + 1;
        while (end < files && folderAt(end) == folder)
            ++end;
        if (folder)
            visit(folder, static_cast<qsizetype>(end - first));
        first = end;
    }
}
