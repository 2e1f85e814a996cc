// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/TFileURL.h"
#include "platform/FileManager.h"

/// The facts about one file that rules and the journal use, as read once from the disk.
struct TFileFacts
{
    quint64 device = 0;
    quint64 inode = 0;
    qint64 size = 0;
    TDate creation; ///< the birth time, else the modification date
    TDate modification;
    quint32 links = 1;
    TFileStatus::Kind kind = TFileStatus::Kind::File;
    bool hasBirthTime = false;
    bool areWhole = true; ///< false: only device, inode and kind have been read

    static TFileFacts fromStatus(const TFileStatus &status);
};

/// One file of a batch as plain immutable facts: what workers get, and what the command line keeps
/// of a million files.
struct TFileItem
{
    TFileURL url;
    TFileFacts facts;
};
