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

/// What a listing alone says of an item.
inline TFileItem justInode(const TFileItem &item)
{
    TFileFacts facts;
    facts.device = item.facts.device;
    facts.inode = item.facts.inode;
    facts.kind = item.facts.kind;
    facts.areWhole = false;
    return {item.url, facts};
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

    bool knowsInodesOnly = false;
    std::function<void(Step, qsizetype index)> beforeStep = [](Step, qsizetype) {};

    /// False when the journal did not allow a move or a move failed.
    bool run(const TemporaryTree &tree, const std::vector<TestMove> &moves)
    {
        std::vector<TFileItem> items;
        for (const TestMove &move : moves) {
            const TFileItem whole = fileItem(tree.path(move.from));
            items.push_back(knowsInodesOnly ? justInode(whole) : whole);
            m_journal.addFile(items.back());
        }
        beforeStep(Step::Plan, 0);
        if (!m_journal.syncPlan() || !m_journal.begin())
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
