// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TResult.h"

#include <QStringList>

/// Splits a text into words the way a POSIX shell does: blanks separate, single quotes keep
/// everything, double quotes keep all but backslashes before $ ` " \ and line breaks, a backslash
/// elsewhere keeps the next character. Nothing is expanded. A quote left open is a failure.
TResult<QStringList> splitShellWords(const QString &text);

/// The text quoted so that a shell, and splitShellWords, read it back as one word; unquoted when no
/// quotes are needed.
QString shellQuoted(const QString &text);
