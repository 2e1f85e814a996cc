// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

/// The libraries that read pictures and music, with the versions that are in use, a line each:
/// "Exiv2 0.27.6".
std::string readerVersions();

/// The version of the libraries that read films, as their distributor calls it; empty where they
/// cannot be loaded.
std::string libavVersion();
