// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/FileManager.h"
#include "rollback/JournalContents.h"

#include <QSet>

#include <span>
#include <vector>

class NamesBefore;
class RecoveryProgress;

/// Finds out what an interrupted run did to the files of its plan: by their inodes where these
/// last, else by the records of the journal and the names that are there. Changes nothing but where
/// it says so. Used by one thread.
class RecoveryMatcher
{
public:
    enum class Fate : quint8 {
        Untouched,
        Renamed,
        HalfWay, ///< has both names: a move by link and unlink was cut off between the two
        Unknown  ///< neither found nor recorded
    };
    struct Outcome
    {
        Fate fate = Fate::Untouched;
        QByteArray newName; ///< for Untouched empty; for Unknown the name it may have, if any
    };

    /// sameBoot says that the journal was written since the machine last started, so that device
    /// numbers still mean the same.
    RecoveryMatcher(FileManager &fileManager, const JournalContents &journal, bool sameBoot,
                    RecoveryProgress *progress = nullptr);

    /// Looks at every folder of the plan.
    void match();
    /// Takes the new names away from the files that also have their old ones.
    void endHalfMoves();
    /// What became of each file of the plan, in its order.
    const std::vector<Outcome> &outcomes() const { return m_outcomes; }
    /// A folder that is not there, cannot be read or has become empty, although files of the plan
    /// should be in it: most likely its drive is not plugged in. Empty when there is none.
    const QByteArray &absentFolder() const { return m_absentFolder; }

private:
    using File = JournalContents::File;
    using Indices = std::span<const qsizetype>;

    std::vector<qsizetype> filesByFolder(std::vector<std::size_t> &starts) const;
    void matchFolder(const QByteArray &path, Indices files);
    int openFolder(const QByteArray &path);
    bool findInodes(int folder, Indices files);
    void noteFound(qsizetype index, const QByteArray &name);
    bool isPlanned(const File &file, const TFileStatus &status) const;
    Outcome judge(const File &planned, const QByteArray &oldName, const NamesBefore &names) const;
    void judgeRest(int folder, Indices files);
    const File &file(qsizetype index) const
    {
        return m_journal.files()[static_cast<std::size_t>(index)];
    }
    Outcome &outcome(qsizetype index) { return m_outcomes[static_cast<std::size_t>(index)]; }

    FileManager &m_fileManager;
    const JournalContents &m_journal;
    bool m_sameBoot;
    RecoveryProgress *m_progress;
    std::vector<Outcome> m_outcomes;
    /// How a file has been found so far in its folder.
    enum class Found : quint8 { Nowhere, UnderOldName, UnderNewName, UnderBoth };
    std::vector<Found> m_found;
    QByteArray m_absentFolder;
    /// The names of the folder at hand as they are spelled, when it has files with intents.
    QSet<QByteArray> m_spelled;
    bool m_folds = false; ///< it does not tell upper from lower case
};
