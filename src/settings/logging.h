// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>

/// The levelled diagnostic log. One line a call to the sink (standard error, or a file); may be
/// called from any thread. Level 0 and 1 show everything, 2 warnings and errors, 3 errors only. The
/// level is the stored one from the first line on, and is kept in memory, so that a call below it
/// costs a comparison.

/// Registers the defaults "logging" = true and "logLevel" = 0, and reads the stored level anew.
void initLogging();
/// Forgets the level, so that a test starts as a process does.
void resetLogLevelForTests();
/// Clamps to 0 to 3 and stores level and "logging" = (level != 0), at once. The flag is for the
/// user interface; nothing here looks at it.
void setLogLevel(int level);
int logLevel();
/// Writes "first:second", the first text preceded by "<prefix> " unless the prefix is null.
void zelOut(const QString &prefix, const QString &first, const QString &second);
void zelLog(const QString &first, const QString &second);
void zelWarn(const QString &first, const QString &second);
void zelError(const QString &first, const QString &second);
/// Writes a line as it is, whatever the level.
void zelConsole(const QString &line);
/// Where lines go; an empty function restores standard error. When this returns, the earlier sink
/// is no longer running. A sink must not log.
void setLogSink(std::function<void(const QString &)> sink);
