// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/FileManager.h"
#include "platform/TDate.h"
#include "platform/TResult.h"

#include <QByteArray>
#include <QIODevice>

#include <string>
#include <vector>

/// What a journal says: the plan of a run and, as far as it was written, what the run announced and
/// did. Journals are read as untrusted: memory grows with the valid part of the file only, every
/// index is within its table and every name is one that a folder can hold. A value.
class JournalContents
{
public:
    /// Bytes in the common store of names.
    struct Text
    {
        quint64 at = 0;
        quint32 size = 0;
    };
    enum class Evidence : quint8 {
        None,
        Intent, ///< newName was announced; whether the move came is not known
        Move    ///< the move to newName succeeded
    };
    struct File
    {
        quint64 device = 0;
        quint64 inode = 0;
        qint64 size = 0;
        TDate modification;
        TDate birth; ///< unset where the file system keeps none
        Text name;   ///< empty for an item that can never be renamed, such as the root folder
        Text newName;
        quint32 folder = 0;
        quint32 links = 1;
        bool needsIntent = false;
        bool hasInodeOnly = false; ///< links, size and dates are not known
        Evidence evidence = Evidence::None;
    };

    /// Reads up to the first frame that is not whole. Fails when that comes before the plan's end,
    /// or when a whole frame holds what no run writes; the message completes "because ...".
    static TResult<JournalContents> read(QIODevice &device);

    TDate time() const { return m_time; }
    const QByteArray &bootId() const { return m_bootId; }
    bool isFinished() const { return m_finished; }
    const std::vector<QByteArray> &folders() const { return m_folders; }
    const std::vector<File> &files() const { return m_files; }
    QByteArrayView text(Text text) const;
    /// Whether a file of the right inode can be the planned one: an inode number is given to
    /// another file when the first is gone, so something else must agree.
    bool canBe(const File &planned, const TFileStatus &found) const;
    /// Where the next frame goes, and its number.
    qint64 end() const { return m_end; }
    quint32 nextSequence() const { return m_nextSequence; }

private:
    class Parser;

    Text store(QByteArrayView bytes);

    TDate m_time;
    QByteArray m_bootId;
    std::vector<QByteArray> m_folders;
    std::vector<File> m_files;
    std::string m_texts;
    qint64 m_end = 0;
    quint32 m_nextSequence = 0;
    bool m_finished = false;
};
