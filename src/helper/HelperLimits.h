// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Takes from this process what it does not need and a hostile file might want: descriptors above
/// the given one, much memory, networks, other processes, changes of the file system, new
/// privileges. Ctrl-C at the terminal is left to the program that started it, and it dies with that
/// program.
void limitHelper(int lastDescriptor, int niceness);
