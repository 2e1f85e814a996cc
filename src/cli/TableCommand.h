// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

/// "table": the rows that the CSV rule would see.
class TableCommand : public Command
{
public:
    using Command::Command;

    Help help() const override;
    OptionGroups optionGroups() const override;

protected:
    int run(const CommandLine &line) override;
};
