// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/CaseBlindness.h"

#include <QHash>

/// Which names stood in a folder at a moment of a run that is walked through backwards: what the
/// disk says now, less the moves that came later. Each move taken back gives the old name again and
/// takes the new one away, which tells the moves of a chain apart (b to c, then a to b). A folder
/// below 0 holds no names. Where the folder does not tell upper from lower case, spellings are one
/// name. Used by one thread.
class NamesBefore
{
public:
    NamesBefore(FileManager &fileManager, int folder, bool folds)
        : m_fileManager(fileManager)
        , m_folder(folder)
        , m_folds(folds)
    {
    }

    bool exists(const QByteArray &name) const
    {
        const auto known = m_changed.constFind(key(name));
        if (known != m_changed.cend())
            return *known;
        TFileStatus ignored;
        return m_folder >= 0 && m_fileManager.status(m_folder, name, false, ignored) == 0;
    }
    /// Two names of one item, as the disk has them now; false for names that a later move touched.
    bool areOneItem(const QByteArray &a, const QByteArray &b) const { return linksOf(a, b) > 0; }
    /// Also says that neither is but another spelling of the other.
    bool areTwoLinks(const QByteArray &a, const QByteArray &b) const { return linksOf(a, b) > 1; }
    void takeBack(const QByteArray &from, const QByteArray &to)
    {
        m_changed[key(to)] = false;
        m_changed[key(from)] = true;
    }

private:
    QByteArray key(const QByteArray &name) const
    {
        return m_folds ? CaseBlindness::folded(name) : name;
    }
    /// How many links the item has that both names stand for; 0 when there is none.
    quint32 linksOf(const QByteArray &a, const QByteArray &b) const
    {
        TFileStatus first;
        TFileStatus second;
        const bool same = !m_changed.contains(key(a)) && !m_changed.contains(key(b)) &&
                          m_fileManager.status(m_folder, a, false, first) == 0 &&
                          m_fileManager.status(m_folder, b, false, second) == 0 &&
                          first.inode == second.inode && first.device == second.device;
        return same ? first.links : 0;
    }

    FileManager &m_fileManager;
    int m_folder;
    bool m_folds;
    QHash<QByteArray, bool> m_changed;
};
