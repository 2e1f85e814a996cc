// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>

/// The levelled diagnostic log. One line a call to the sink (standard error, or a file); may be
/// called from any thread.

/// Registers the defaults "logging" = true and "logLevel" = 0.
void initLogging();
/// Clamps to at most 3 and stores level and "logging" = (level != 0).
void setLogLevel(int level);
int logLevel();
/// Writes "first:second", the first text preceded by "<prefix> " when there is a prefix.
void zelOut(const QString &prefix, const QString &first, const QString &second);
void zelLog(const QString &first, const QString &second);
void zelWarn(const QString &first, const QString &second);
void zelError(const QString &first, const QString &second);
/// Where lines go; an empty function restores standard error.
void setLogSink(std::function<void(const QString &)> sink);
