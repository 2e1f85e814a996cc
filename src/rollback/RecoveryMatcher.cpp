// SPDX-License-Identifier: GPL-3.0-or-later
#include "rollback/RecoveryMatcher.h"

#include "commonprocs/CaseBlindness.h"
#include "commonprocs/easyfile.h"
#include "rollback/NamesBefore.h"
#include "rollback/RecoveryProgress.h"

#include <algorithm>
#include <cerrno>
#include <limits>

RecoveryMatcher::RecoveryMatcher(FileManager &fileManager, const JournalContents &journal,
                                 bool sameBoot, RecoveryProgress *progress)
    : m_fileManager(fileManager)
    , m_journal(journal)
    , m_sameBoot(sameBoot)
    , m_progress(progress)
    , m_outcomes(journal.files().size())
    , m_found(journal.files().size(), Found::Nowhere)
{
}

void RecoveryMatcher::match()
{
    std::vector<std::size_t> starts;
    const std::vector<qsizetype> files = filesByFolder(starts);
    for (std::size_t folder = 0; folder < m_journal.folders().size(); ++folder) {
        const Indices own =
            Indices(files).subspan(starts[folder], starts[folder + 1] - starts[folder]);
        matchFolder(m_journal.folders()[folder], own);
    }
}

/// The files that have a name, folder by folder and in the plan's order; those of folder i begin at
/// starts[i].
std::vector<qsizetype> RecoveryMatcher::filesByFolder(std::vector<std::size_t> &starts) const
{
    starts.assign(m_journal.folders().size() + 1, 0);
    for (const File &each : m_journal.files())
        starts[each.folder + 1] += each.name.size > 0 ? 1 : 0;
    std::partial_sum(starts.begin(), starts.end(), starts.begin());
    std::vector<std::size_t> next(starts.begin(), starts.end() - 1);
    std::vector<qsizetype> files(starts.back());
    for (qsizetype i = 0; i < static_cast<qsizetype>(m_journal.files().size()); ++i)
        if (file(i).name.size > 0)
            files[next[file(i).folder]++] = i;
    return files;
}

void RecoveryMatcher::matchFolder(const QByteArray &path, Indices files)
{
    if (files.empty())
        return;
    m_folds = false;
    const int folder = openFolder(path);
    const bool hasEntries = folder >= 0 && findInodes(folder, files);
    if (!hasEntries && m_absentFolder.isEmpty())
        m_absentFolder = path;
    judgeRest(folder, files);
    if (folder >= 0)
        m_fileManager.closeFolder(folder);
}

/// Whatever may wait for a disk comes after this.
int RecoveryMatcher::openFolder(const QByteArray &path)
{
    if (m_progress != nullptr)
        m_progress->setFolderAtHand(path);
    return m_fileManager.openFolder(path);
}

/// Looks for the planned inodes among the folder's entries. False when it has none at all, or the
/// disk fails; a folder that nobody may list has some.
bool RecoveryMatcher::findInodes(int folder, Indices files)
{
    std::vector<std::pair<quint64, qsizetype>> wanted;
    wanted.reserve(files.size());
    for (const qsizetype index : files)
        if (!file(index).needsIntent)
            wanted.emplace_back(file(index).inode, index);
    std::sort(wanted.begin(), wanted.end());
    m_spelled.clear();
    QByteArray sample;
    bool hasEntries = false;
    const int error =
        m_fileManager.list(folder, [&](const char *name, TFileStatus::Kind, quint64 inode) {
            hasEntries = true;
            if (wanted.size() < files.size()) {
                m_spelled.insert(name);
                if (sample.isEmpty() && CaseBlindness::hasSpellings(name))
                    sample = name;
            }
            const auto found =
                std::lower_bound(wanted.begin(), wanted.end(),
                                 std::pair(inode, std::numeric_limits<qsizetype>::min()));
            if (found == wanted.end() || found->first != inode)
                return;
            const QByteArray entry(name);
            TFileStatus status;
            if (m_fileManager.status(folder, entry, false, status) == 0 &&
                isPlanned(file(found->second), status))
                noteFound(found->second, entry);
        });
    m_folds = CaseBlindness::isFoundBySpelling(
        m_fileManager, folder, sample,
        [this](const QByteArray &name) { return m_spelled.contains(name); });
    return error == 0 ? hasEntries : error == EACCES;
}

bool RecoveryMatcher::isPlanned(const File &file, const TFileStatus &status) const
{
    return file.inode == status.inode && (!m_sameBoot || file.device == status.device) &&
           m_journal.canBe(file, status);
}

void RecoveryMatcher::noteFound(qsizetype index, const QByteArray &name)
{
    Found &found = m_found[static_cast<std::size_t>(index)];
    Outcome &result = outcome(index);
    if (name == m_journal.text(file(index).name)) {
        found = found == Found::Nowhere ? Found::UnderOldName : Found::UnderBoth;
        return;
    }
    // Of several new names, links made since, the one in the records counts, else the first.
    const QByteArrayView recorded = m_journal.text(file(index).newName);
    if (result.newName.isEmpty() || name == recorded ||
        (result.newName != recorded && name < result.newName))
        result.newName = name;
    const bool hasOld = found == Found::UnderOldName || found == Found::UnderBoth;
    found = hasOld ? Found::UnderBoth : Found::UnderNewName;
}

/// Walks backwards through the run, whose moves went in the plan's order, and judges every file by
/// what stood in the folder at its moment.
void RecoveryMatcher::judgeRest(int folder, Indices files)
{
    NamesBefore names(m_fileManager, folder, m_folds);
    for (auto at = files.rbegin(); at != files.rend(); ++at) {
        const qsizetype index = *at;
        const File &planned = file(index);
        Outcome &result = outcome(index);
        const QByteArray oldName = m_journal.text(planned.name).toByteArray();
        const Found found = m_found[static_cast<std::size_t>(index)];
        if (found == Found::UnderNewName)
            result.fate = Fate::Renamed;
        else if (found != Found::UnderOldName)
            result = judge(planned, oldName, names);
        if (result.fate == Fate::Renamed || result.fate == Fate::HalfWay)
            names.takeBack(oldName, result.newName);
    }
}

/// A file that its inode does not tell about.
RecoveryMatcher::Outcome RecoveryMatcher::judge(const File &planned, const QByteArray &oldName,
                                                const NamesBefore &names) const
{
    using Evidence = JournalContents::Evidence;
    const QByteArray newName = m_journal.text(planned.newName).toByteArray();
    const bool hasOld = names.exists(oldName);
    if (planned.evidence == Evidence::None || newName == oldName)
        return {hasOld ? Fate::Untouched : Fate::Unknown, {}};
    const bool hasNew = names.exists(newName);
    if (planned.evidence == Evidence::Move)
        return hasOld && !hasNew ? Outcome{} : Outcome{Fate::Renamed, newName};
    // A file that only changes its case stops over under a third name. A user-space file system may
    // find it by the other two for a moment, but does not list them any more.
    if (const QByteArray between = stopOverName(newName); m_spelled.contains(between)) {
        if (!m_spelled.contains(oldName) && !m_spelled.contains(newName))
            return {Fate::Renamed, between};
        if (hasOld && names.areOneItem(oldName, between))
            return {Fate::HalfWay, between};
    }
    if (!hasOld)
        return {hasNew ? Fate::Renamed : Fate::Unknown, newName};
    const bool areSpellings =
        m_folds && CaseBlindness::folded(oldName) == CaseBlindness::folded(newName);
    if (!hasNew || (!areSpellings && !names.areOneItem(oldName, newName)))
        return {};
    // Two links, or two spellings of one name, of which the folder has but one.
    if (m_folds && !areSpellings)
        return {Fate::HalfWay, newName};
    const bool isNew = m_spelled.contains(newName);
    if (m_spelled.contains(oldName))
        return isNew ? Outcome{Fate::HalfWay, newName} : Outcome{};
    return {isNew ? Fate::Renamed : Fate::Unknown, newName};
}

void RecoveryMatcher::endHalfMoves()
{
    for (qsizetype i = 0; i < static_cast<qsizetype>(m_outcomes.size()); ++i) {
        Outcome &result = outcome(i);
        if (result.fate != Fate::HalfWay)
            continue;
        const int folder = openFolder(m_journal.folders()[file(i).folder]);
        const QByteArray oldName = m_journal.text(file(i).name).toByteArray();
        const bool ended =
            folder >= 0 &&
            NamesBefore(m_fileManager, folder, false).areTwoLinks(oldName, result.newName) &&
            m_fileManager.unlink(folder, result.newName) == 0;
        if (ended)
            result = {};
        else
            result.fate = Fate::Unknown;
        if (folder >= 0)
            m_fileManager.closeFolder(folder);
    }
}
