// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/BatchCommand.h"
#include "document/RenameGuard.h"

/// "rename": the live run.
class RenameCommand : public BatchCommand
{
public:
    using BatchCommand::BatchCommand;

    Help help() const override;
    OptionGroups optionGroups() const override;

protected:
    int run(const CommandLine &line) override;

private:
    std::optional<RenameGuard::Answer> analyse(BatchReport &report);
    int refuseWithPreview(const RenameGuard::Answer &answer);
    std::optional<int> confirm(const CommandLine &line, const QString &question);
    static TResult<bool> prepare(TRenameRun &run, const QString &logsFolder);
    int rename(const CommandLine &line, const RenameGuard::Answer &answer, BatchReport &report);
    void move(TRenameRun &run, BatchReport &report, RenameOutcome &outcome);
    int statusOf(const RenameOutcome &outcome);
};
