// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/TFolderAccess.h"

/// What the whole program shares besides its preferences. Main thread only.

/// Reads the saved folder grants; done once at start, after the preferences. A grant whose folder
/// is gone is left out, and logged.
void initGlobals();
/// The folders that were granted in earlier runs of the program.
TFolderAccessList &theScopedFolders();
