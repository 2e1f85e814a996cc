// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/FileManager.h"

#include <QHash>

/// Which names stood in a folder at a moment of a run that is walked through backwards: what the
/// disk says now, less the moves that came later. Each move taken back gives the old name again and
/// takes the new one away, which tells the moves of a chain apart (b to c, then a to b). A folder
/// below 0 holds no names. Used by one thread.
class NamesBefore
{
public:
    NamesBefore(FileManager &fileManager, int folder)
        : m_fileManager(fileManager)
        , m_folder(folder)
    {
    }

    bool exists(const QByteArray &name) const
    {
        const auto known = m_changed.constFind(name);
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
        m_changed[to] = false;
        m_changed[from] = true;
    }

private:
    /// How many links the item has that both names stand for; 0 when there is none.
    quint32 linksOf(const QByteArray &a, const QByteArray &b) const
    {
        TFileStatus first;
        TFileStatus second;
        const bool same = !m_changed.contains(a) && !m_changed.contains(b) &&
                          m_fileManager.status(m_folder, a, false, first) == 0 &&
                          m_fileManager.status(m_folder, b, false, second) == 0 &&
                          first.inode == second.inode && first.device == second.device;
        return same ? first.links : 0;
    }

    FileManager &m_fileManager;
    int m_folder;
    QHash<QByteArray, bool> m_changed;
};
