// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/ByteOutput.h"
#include "cli/Terminal.h"
#include "commonprocs/TFileItem.h"
#include "document/TMetadataSource.h"
#include "platform/Clock.h"
#include "platform/FileManager.h"

#include <atomic>
#include <functional>
#include <memory>
#include <span>

/// The doors of the command line to the world, none of them owned, so that tests run verbs in
/// process with streams, terminal, disk and clock of their own.
struct CliEnvironment
{
    /// A source for one pass over the files, which must outlive it.
    using MakeMetadataSource =
        std::function<std::unique_ptr<TMetadataSource>(std::span<const TFileItem>)>;

    ByteOutput &out;
    ByteOutput &err;
    int input; ///< descriptor from which "--files-from -" reads
    Terminal &terminal;
    FileManager &fileManager;
    const Clock &clock;
    const std::atomic<bool> &interrupted;
    bool outIsTerminal = false;
    bool errIsTerminal = false;
    /// Called once by verbs that stop between two files when interrupted is set; may be empty.
    std::function<void()> takeOverSignals = {};
    /// Empty: files have no metadata, as if it had not been read.
    MakeMetadataSource makeMetadataSource = {};
};
