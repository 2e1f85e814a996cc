// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

/// "logs": the saved rollback logs, newest first.
class LogsCommand : public Command
{
public:
    using Command::Command;

    Help help() const override;
    OptionGroups optionGroups() const override;

protected:
    int run(const CommandLine &line) override;
};
