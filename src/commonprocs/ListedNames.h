// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/HashSet128.h"
#include "commonprocs/TFileURL.h"
#include "platform/FileManager.h"

#include <map>

/// Which of many names stand in their folders, from one listing of each folder instead of one
/// question to the disk for each name. Any thread may ask once all folders are listed.
class ListedNames
{
public:
    /// Lists a folder when that is less work than asking about so many of its names. Neither a
    /// folder that cannot be listed nor one that nobody may enter holds any names here.
    void list(FileManager &fileManager, const TFolderPtr &folder, qsizetype names);
    /// True only for a name that was listed as it is spelled. False says nothing: the disk may know
    /// it, under another spelling or since.
    bool contain(const TFileURL &url) const;

private:
    std::map<TFolderPtr, HashSet128> m_folders;
};
