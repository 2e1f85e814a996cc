// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

/// The help of the program and of its verbs, wrapped for 80 columns, in UTF-8.
namespace HelpText {

QByteArray forCommand(const Command &command);
QByteArray forProgram(const std::vector<Command::Help> &verbs);

} // namespace HelpText
