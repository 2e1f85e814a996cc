// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

#include <memory>
#include <vector>

/// The program around the verbs.
namespace Cli {

/// All verbs, in the order in which help lists them.
std::vector<std::unique_ptr<Command>> commands(CliEnvironment &environment);
/// Runs the arguments that follow the program's name; an exit status.
int run(const QStringList &arguments, CliEnvironment &environment);

} // namespace Cli
