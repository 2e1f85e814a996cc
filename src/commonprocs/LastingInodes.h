// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

/// True for the file systems, by statfs(2) magic, whose inode numbers stay with a file for its life
/// and whose renames can be told not to replace. An unknown one counts as unreliable.
bool fileSystemKeepsInodes(quint64 magic);
/// The same for the file system that holds a folder, given by its path or a descriptor of it; false
/// when that cannot be asked.
bool folderKeepsInodes(const QByteArray &path);
bool folderKeepsInodes(int folder);
