// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/RenameChunk.h"
#include "document/TRenameRun.h"
#include "rollback/RollbackLog.h"

/// Writes down what became of the files of a run, in list order: counts, report, text log, rollback
/// record. Used by one thread at a time.
class RunRecorder
{
public:
    /// What is written to; none is owned.
    struct Outputs
    {
        std::span<const TFileItem> files;
        const TRenameRun::Report *report = nullptr; ///< may be an empty function
        const TRenameRun::TextLog *textLog = nullptr;
        RollbackLogWriter *rollbackLog = nullptr; ///< may be null
    };

    explicit RunRecorder(const Outputs &outputs)
        : m_outputs(outputs)
    {
    }

    /// Takes the texts out of the entry.
    void record(qsizetype index, RenameEntry &entry);
    /// Counts only; the rest is the run's to fill in.
    const TRenameSummary &summary() const { return m_summary; }

private:
    TRenameReport reportOf(qsizetype index, RenameEntry &entry) const;
    void count(const TRenameReport &report);
    void writeText(const TFileURL &source, const TRenameReport &report, const RenameEntry &entry);
    void writeTransaction(const TFileURL &source, const TRenameReport &report);

    Outputs m_outputs;
    TRenameSummary m_summary;
};
