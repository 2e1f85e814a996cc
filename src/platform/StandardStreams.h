// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Fills standard streams that the caller closed, so that no journal or log ever gets their numbers
/// and is written into; using them still fails. To be called first in a program.
void fillClosedStreams();
