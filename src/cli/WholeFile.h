// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TResult.h"

#include <QByteArray>

/// The content of a file that a user named, by its bytes; the failure names the file.
TResult<QByteArray> readWholeFile(const QString &path);
/// Puts a file in place at once, replacing an earlier one, also behind a link. What is no file (a
/// pipe, a device, standard output) is written into. The failure names the file.
TResult<bool> writeWholeFile(const QString &path, const QByteArray &content);
/// Why a file that the user named cannot be opened for reading.
QString reasonNotToOpen(int error);
/// The same for a path, as far as it shows without opening the file; empty when nothing is known
/// against it.
QString reasonNotToRead(const QString &path);
