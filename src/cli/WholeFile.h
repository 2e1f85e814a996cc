// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TResult.h"

#include <QByteArray>

/// The content of a file that a user named, by its bytes; the failure names the file.
TResult<QByteArray> readWholeFile(const QString &path);
/// Puts a file in place at once, replacing an earlier one; the failure names the file.
TResult<bool> writeWholeFile(const QString &path, const QByteArray &content);
/// Why a file that the user named cannot be opened.
QString reasonNotToOpen(int error);
