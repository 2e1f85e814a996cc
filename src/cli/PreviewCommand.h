// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/BatchCommand.h"

/// "preview": what each file would be called, and every problem; touches nothing.
class PreviewCommand : public BatchCommand
{
public:
    using BatchCommand::BatchCommand;

    Help help() const override;

protected:
    int run(const CommandLine &line) override;
};
