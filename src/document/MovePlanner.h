// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/FolderPicture.h"
#include "commonprocs/TFileItem.h"
#include "document/TRenameOperation.h"

/// Where the next file of a run goes, given the picture of its folder. Forecast and run decide
/// through this one place, so that what is shown is what happens. Whether the folder may be changed
/// is no part of it: a run finds out by trying. Used by one thread at a time.
class MovePlanner
{
public:
    struct Plan
    {
        QString finalName;      ///< null when there was nothing to plan
        QString uniqueBase;     ///< the base of the final name; null when it is the given one
        QString refusal;        ///< why the move has to fail; empty otherwise
        bool unchanged = false; ///< left alone because its name would not change

        bool moves() const { return refusal.isEmpty() && !unchanged && !finalName.isNull(); }
    };

    explicit MovePlanner(FileManager &fileManager)
        : m_folders(fileManager)
    {
    }

    FolderPicture &folders() { return m_folders; }
    /// Finds a free base and tests what the disk would refuse. A file that will move is moved in
    /// the picture at once.
    Plan plan(const TFileItem &item, const TEvaluatedName &name, const TOptions &options);
    /// The planned name turned out to be taken: the next plan for the same file.
    Plan planAgain(const TFileItem &item, const TEvaluatedName &name, const QString &takenName);
    /// A planned move did not or will not happen. Plans are taken back last one first.
    void takeBack(const TFileItem &item, const Plan &plan);

private:
    Plan decide(const TFileItem &item, const TEvaluatedName &name);

    FolderPicture m_folders;
};
