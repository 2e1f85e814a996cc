// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Takes from this process, for good, the system calls with which a hostile file could do harm once
/// it has taken the reader over: networks, other processes and programs, and every change of the
/// file system. They fail with EPERM. Reading files, memory and threads stay. Does nothing on
/// processors that it does not know; false when the system refused.
bool filterSystemCalls();
