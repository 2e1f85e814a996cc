// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/TFileURL.h"
#include "platform/FileManager.h"
#include "rollback/JournalContents.h"

#include <optional>
#include <vector>

/// The files of a past run by their inodes, as the journal that is kept with its rollback log
/// tells. Where a run gave files the names that others had just left, names alone do not say
/// whether a file is still renamed or has been brought back. Read-only once made, so any thread may
/// ask.
class PlannedFiles
{
public:
    /// Knows no file.
    PlannedFiles() = default;
    /// Knows no file either when the journal of the log is not kept any more.
    static PlannedFiles ofRun(const QString &rollbackLog);

    /// True for the status of a file of the run that had another place than this one before it.
    bool isAnother(const TFileURL &original, const TFileStatus &status) const;

private:
    void index();
    bool stoodAt(const JournalContents::File &file, const TFileURL &place) const;

    std::optional<JournalContents> m_journal;
    std::vector<std::pair<quint64, std::size_t>> m_byInode; ///< sorted; with the index of the file
};
