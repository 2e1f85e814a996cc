// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/FileManager.h"
#include "platform/TResult.h"
#include "rollback/OpenFile.h"

#include <QByteArray>
#include <QString>

#include <vector>

/// The folder <logs>/.running, where journals and unfinished rollback logs stand. A file in it is
/// locked by the program that writes it; what nobody locks was left by a crash. The ending of the
/// name says what a file is, so that a start need not read journals that are only kept.
class JournalFolder
{
public:
    /// A plan whose run has not begun: nothing has moved.
    static constexpr QByteArrayView kPlanning{".plan"};
    /// A run that has begun and not finished.
    static constexpr QByteArrayView kRunning{".journal"};
    /// A run that is over.
    static constexpr QByteArrayView kFinished{".finished"};
    static constexpr QByteArrayView kUnreadable{".unreadable"};
    /// A rollback log that is being written.
    static constexpr QByteArrayView kPartialLog{".partial"};
    static constexpr qsizetype kKeptJournals = 50;

    /// Opens the folder, making it and the logs folder (mode 0700, and lasting) when missing.
    static TResult<JournalFolder> open(const QString &logsFolder, FileManager &fileManager);
    /// Opens the folder only when it is there; error, when given, becomes ENOENT when it is not.
    static TResult<JournalFolder> openExisting(const QString &logsFolder, int *error = nullptr);

    /// A new, locked file for reading and writing (mode 0600) with a name of its own.
    TResult<OpenFile> createLocked(QByteArrayView ending, QByteArray &name) const;
    /// Opens and locks a file that is there; not open when somebody else has it, it is gone or no
    /// file. Fails when the disk does not let it be opened.
    TResult<OpenFile> openLocked(const QByteArray &name) const;
    /// Names with the ending, sorted; fails when the folder cannot be read.
    TResult<std::vector<QByteArray>> names(QByteArrayView ending) const;
    /// 0 or an errno. Replaces what stands under the new name.
    int rename(const QByteArray &from, const QByteArray &to) const;
    void remove(const QByteArray &name) const;
    /// The run of a journal is over: cuts off the space that was reserved behind its records, gives
    /// it the ending of finished ones, and deletes the oldest of these down to the number that is
    /// kept. name becomes the new one, which tells the run's rollback log, if it has any; 0 or an
    /// errno.
    int keepFinished(QByteArray &name, const OpenFile &file, qint64 size,
                     const QByteArray &rollbackLog) const;
    /// The youngest journal kept with the rollback log of that name, for reading; not open when
    /// there is none.
    OpenFile openFinished(const QByteArray &rollbackLog) const;

    int descriptor() const { return m_folder.descriptor(); }
    const QByteArray &logsPath() const { return m_logsPath; }
    QByteArray pathOf(const QByteArray &name) const;
    /// The name at the end of a path.
    static QByteArray nameOf(const QString &path);

private:
    JournalFolder(OpenFile folder, QByteArray logsPath)
        : m_folder(std::move(folder))
        , m_logsPath(std::move(logsPath))
    {
    }

    std::vector<QByteArray> oldestFirst(std::vector<QByteArray> files) const;
    void removeOldJournals() const;

    OpenFile m_folder;
    QByteArray m_logsPath;
};
