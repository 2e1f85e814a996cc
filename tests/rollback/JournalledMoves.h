// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/ByteNames.h"
#include "commonprocs/easyfile.h"
#include "rollback/RunJournal.h"
#include "support/TemporaryTree.h"

#include <fcntl.h>
#include <functional>
#include <vector>

/// One rename of a run, as tests write it down.
struct TestMove
{
    QString from; ///< relative to the tree
    QString to;   ///< a name
};

inline TFileItem fileItem(const QString &path)
{
    const TFileURL url = TFileURL::fileURLWithPath(path);
    TFileStatus status;
    DiskFileManager().status(AT_FDCWD, url.fileSystemPath(), false, status);
    return {url, TFileFacts::fromStatus(status)};
}

/// Renames files the way a run does: plan, intents in groups of 64, moves, records. A test that
/// wants to stop in the middle does so in beforeStep, which is told the step about to be taken.
class JournalledMoves
{
public:
    enum class Step { Plan, Intents, Move, Record, Done };

    JournalledMoves(RunJournal &journal, FileManager &disk)
        : m_journal(journal)
        , m_mover(disk)
    {
    }

    std::function<void(Step, qsizetype index)> beforeStep = [](Step, qsizetype) {};

    /// False when the journal did not allow a move or a move failed.
    bool run(const TemporaryTree &tree, const std::vector<TestMove> &moves)
    {
        std::vector<TFileItem> items;
        for (const TestMove &move : moves) {
            items.push_back(fileItem(tree.path(move.from)));
            m_journal.addFile(items.back());
        }
        beforeStep(Step::Plan, 0);
        if (!m_journal.syncPlan())
            return false;
        const auto total = static_cast<qsizetype>(moves.size());
        for (qsizetype i = 0; i < total; ++i) {
            if (i % 64 == 0 && !announce(moves, i, qMin(i + 64, total)))
                return false;
            const TFileURL &url = items[static_cast<std::size_t>(i)].url;
            const QString &to = moves[static_cast<std::size_t>(i)].to;
            beforeStep(Step::Move, i);
            if (!m_mover.move(*url.folder(), url.lastPathComponent(), to).ok())
                return false;
            beforeStep(Step::Record, i);
            m_journal.recordMove(i, ByteNames::toBytes(to));
        }
        beforeStep(Step::Done, total);
        return true;
    }

private:
    bool announce(const std::vector<TestMove> &moves, qsizetype first, qsizetype end)
    {
        bool any = false;
        for (qsizetype i = first; i < end; ++i)
            if (m_journal.needsIntent(i)) {
                m_journal.addIntent(i, ByteNames::toBytes(moves[static_cast<std::size_t>(i)].to));
                any = true;
            }
        beforeStep(Step::Intents, first);
        return !any || m_journal.syncIntents();
    }

    RunJournal &m_journal;
    FileMover m_mover;
};
