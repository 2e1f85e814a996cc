// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDocumentGathering.h"
#include "document/TOptions.h"
#include "platform/Clock.h"
#include "platform/FileManager.h"
#include "platform/MainThread.h"
#include "platform/Notifications.h"
#include "platform/WorkerQueue.h"
#include "rollback/RecoveryProgress.h"
#include "settings/PresetsManager.h"

#include <functional>
#include <memory>

/// What every document of the program shares. The doors are not owned and outlive all documents.
struct TDocumentServices
{
    MainThread &mainThread;
    FileManager &fileManager;
    const Clock &clock;
    Notifications &notifications;
    /// Does the small disk work of windows.
    WorkerQueue &worker;
    PresetsManager presets;
    /// The folder of the rollback logs, made when it is missing; empty when that is impossible.
    std::function<QString()> logsFolder;
    /// Makes what reads a document's metadata; empty: nobody does.
    TDocumentGatherer::Make makeGatherer;
    /// What a new batch begins with.
    TOptions options = {};
    /// What is still being found out about interrupted runs; null: nothing.
    std::shared_ptr<RecoveryProgress> recovery = {};

    /// The folder of this user.
    static QString userLogsFolder();
};
