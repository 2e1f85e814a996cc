// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Makes a folder with all missing parents, for its owner alone (mode 0700). True when it stands
/// afterwards, made by this call or before. May be called from any thread.
bool makePrivateFolder(const QString &path);
