// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "rollback/RunJournal.h"

#include <QString>

#include <optional>
#include <vector>

class Console;
class FileManager;
struct CliEnvironment;

/// Where rollback logs and journals are, and the tidying up after interrupted runs that every verb
/// which moves files does first.
namespace LogsFolder {

/// The folder, whether it exists or not.
QString path();
/// The folder, made when it is not there; empty when that is impossible.
QString made();
/// Why the logs in the folder cannot be listed; empty when they can, or when there is no folder.
QString problem(FileManager &disk);
/// Turns the journals of interrupted runs into rollback logs and says so; also when a folder keeps
/// it waiting. Nothing when the user then stopped it.
std::optional<std::vector<RecoveredRun>> recover(CliEnvironment &environment, Console &console);

} // namespace LogsFolder
