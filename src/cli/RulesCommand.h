// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

/// "rules": every rule kind with its settings, defaults and meaning.
class RulesCommand : public Command
{
public:
    using Command::Command;

    Help help() const override;
    OptionGroups optionGroups() const override;

protected:
    int run(const CommandLine &line) override;
};
