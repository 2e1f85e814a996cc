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
    void makeRun(const CommandLine &line);
    TResult<bool> prepare();
    std::optional<RenameGuard::Answer> analyse(BatchReport &report);
    int refuseWithPreview(const RenameGuard::Answer &answer);
    /// Without --yes, when the question would find nobody.
    int refuseUnasked();
    int refuseWithoutUndo(const QString &problem);
    void warnOfNoUndo(const QString &problem);
    std::optional<int> confirm(const CommandLine &line, const QStringList &question);
    int rename(const CommandLine &line, const RenameGuard::Answer &answer,
               const TResult<bool> &prepared, BatchReport &report);
    void move(BatchReport &report);
    int status();

    RenameOutcome m_outcome;
    QString m_logsFolder;
    std::unique_ptr<TMetadataSource> m_source;
    std::unique_ptr<TRenameRun> m_run; ///< last, so that it ends before what it uses
};
