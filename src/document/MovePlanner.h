// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/FolderPicture.h"
#include "commonprocs/TFileItem.h"
#include "document/TRenameOperation.h"

/// Where the next file of a run goes, given the picture of its folder. Forecast and run decide
/// through this one place, so that what is shown is what happens.
class MovePlanner
{
public:
    struct Plan
    {
        QString finalName;
        QString refusal;        ///< why the move has to fail; empty otherwise
        bool unchanged = false; ///< left alone because its name would not change
        bool renamedForUniqueness = false;

        bool moves() const { return refusal.isEmpty() && !unchanged && !finalName.isNull(); }
    };

    explicit MovePlanner(FileManager &fileManager)
        : m_folders(fileManager)
    {
    }

    FolderPicture &folders() { return m_folders; }
    /// Makes the base unique (reported in name) and tests what the disk would refuse. A file that
    /// will move is moved in the picture at once.
    Plan plan(const TFileItem &item, TEvaluatedName &name, const TOptions &options);
    /// The planned name turned out to be taken: the next plan for the same file, from the base that
    /// the rules gave. Only names with an extension are tried again.
    Plan planAgain(const TFileItem &item, TEvaluatedName &name, const QString &takenName);
    /// A planned move did not happen.
    void takeBack(const TFileItem &item, const Plan &plan);

private:
    Plan decide(const TFileItem &item, TEvaluatedName &name);

    FolderPicture m_folders;
};
