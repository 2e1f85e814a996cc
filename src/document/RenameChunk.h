// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/easyfile.h"
#include "document/MovePlanner.h"

#include <QByteArray>

#include <vector>

/// One file on its way through a run: evaluated and planned by one thread, moved by another,
/// written down by the first.
struct RenameEntry
{
    TEvaluatedName name;
    MovePlanner::Plan plan;
    QByteArray from; ///< old name as the disk has it
    QByteArray to;   ///< the plan's final name likewise; empty when nothing is to move
    TMoveResult result;

    void setPlan(MovePlanner::Plan newPlan);
};

/// Neighbouring files of a run, handed from thread to thread as a whole.
struct RenameChunk
{
    qsizetype first = 0; ///< index of the first file
    std::vector<RenameEntry> entries;
    std::size_t moved = 0; ///< how many of them the mover is done with

    qsizetype indexOf(std::size_t entry) const { return first + static_cast<qsizetype>(entry); }
};
