// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/ByteOutput.h"
#include "cli/Terminal.h"
#include "platform/Clock.h"
#include "platform/FileManager.h"

#include <atomic>
#include <functional>

/// The doors of the command line to the world, none of them owned, so that tests run verbs in
/// process with streams, terminal, disk and clock of their own.
struct CliEnvironment
{
    ByteOutput &out;
    ByteOutput &err;
    int input; ///< descriptor from which "--files-from -" reads
    Terminal &terminal;
    FileManager &fileManager;
    const Clock &clock;
    const std::atomic<bool> &interrupted;
    bool outIsTerminal = false;
    bool errIsTerminal = false;
    /// Called once by verbs from where on they stop between two files when interrupted is set; may
    /// be empty.
    std::function<void()> takeOverSignals = {};
    /// Path of the program that reads metadata; empty: the one that came with this program.
    QString metadataHelper = {};
};
