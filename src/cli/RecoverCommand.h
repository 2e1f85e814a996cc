// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

/// "recover": turns the journals of interrupted runs into rollback logs.
class RecoverCommand : public Command
{
public:
    using Command::Command;

    Help help() const override;
    OptionGroups optionGroups() const override;

protected:
    int run(const CommandLine &line) override;
};
