// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

/// Makes a folder with all missing parents, for its owner alone (mode 0700). The path is bytes, as
/// the disk has them. True when the folder stands afterwards, made by this call or before. May be
/// called from any thread.
bool makePrivateFolder(const QByteArray &path);
