// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"
#include "cli/RollbackReport.h"
#include "rollback/RollbackRun.h"

#include <optional>

/// "rollback": undoes a past run, or only shows what could be undone.
class RollbackCommand : public Command
{
public:
    using Command::Command;

    Help help() const override;
    OptionGroups optionGroups() const override;

protected:
    int run(const CommandLine &line) override;

private:
    /// Finds the log and checks its records against the disk; a status when there is none to undo.
    std::optional<int> findNamed(const QString &name);
    std::optional<int> findLast();
    QString pathOfLog(const QString &name);
    /// False when it was interrupted.
    bool check(const QString &path, std::vector<TRenameTRX> records);
    std::optional<int> confirm(const CommandLine &line);
    int roll(bool reverse);
    void takeRestored(std::size_t record, const TFileURL &url);
    qsizetype count(qint64 status) const;

    RollbackResult m_result;
    std::unique_ptr<RollbackRun> m_run;
};
