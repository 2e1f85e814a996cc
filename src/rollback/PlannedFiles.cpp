// SPDX-License-Identifier: GPL-3.0-or-later
#include "rollback/PlannedFiles.h"

#include "commonprocs/ByteNames.h"
#include "commonprocs/LastingInodes.h"
#include "rollback/JournalFolder.h"

#include <QFile>

#include <algorithm>

PlannedFiles PlannedFiles::ofRun(const QString &rollbackLog)
{
    PlannedFiles files;
    const TFileURL log = TFileURL::fileURLWithPath(rollbackLog);
    const TResult<JournalFolder> folder = JournalFolder::openExisting(log.folder()->path());
    if (!folder)
        return files;
    OpenFile kept = folder.value().openFinished(JournalFolder::nameOf(rollbackLog));
    QFile device;
    if (!kept.isOpen() ||
        !device.open(kept.release(), QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return files;
    if (TResult<JournalContents> journal = JournalContents::read(device)) {
        files.m_journal = std::move(journal).value();
        files.index();
    }
    return files;
}

void PlannedFiles::index()
{
    std::vector<bool> keepsInodes;
    for (const QByteArray &folder : m_journal->folders())
        keepsInodes.push_back(folderKeepsInodes(folder));
    for (std::size_t i = 0; i < m_journal->files().size(); ++i)
        if (const JournalContents::File &file = m_journal->files()[i]; keepsInodes[file.folder])
            m_byInode.emplace_back(file.inode, i);
    std::sort(m_byInode.begin(), m_byInode.end());
}

bool PlannedFiles::isAnother(const TFileURL &original, const TFileStatus &status) const
{
    bool known = false;
    for (auto found = std::lower_bound(m_byInode.begin(), m_byInode.end(),
                                       std::pair(status.inode, std::size_t{0}));
         found != m_byInode.end() && found->first == status.inode; ++found) {
        const JournalContents::File &file = m_journal->files()[found->second];
        if (!m_journal->canBe(file, status))
            continue;
        if (stoodAt(file, original))
            return false;
        known = true;
    }
    return known;
}

bool PlannedFiles::stoodAt(const JournalContents::File &file, const TFileURL &place) const
{
    return m_journal->text(file.name) == ByteNames::toBytes(place.lastPathComponent()) &&
           m_journal->folders()[file.folder] == place.folder()->bytes();
}
