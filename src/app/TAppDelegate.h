// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TApplicationHost.h"
#include "platform/Clock.h"
#include "platform/FileManager.h"
#include "platform/MainThread.h"
#include "platform/Notifications.h"
#include "platform/OperatingSystem.h"
#include "platform/WorkerQueue.h"
#include "rollback/RecoveryProgress.h"

#include <deque>
#include <memory>

class TDoRollBackWindowController;
class TRollBackWindowController;

/// Starts the program's services in their order, sees to it that a batch is open, tells of runs
/// that were cut off, and holds the rollback command. Keeps no state of any batch. Owned by main();
/// main thread only. Destruction finishes the file that a rollback has in hand.
class TAppDelegate
{
public:
    /// All of them outlive the delegate, disk and clock the program: a recovery that hangs keeps
    /// them.
    struct Services
    {
        TApplicationHost &host;
        MainThread &mainThread;
        Notifications &notifications;
        FileManager &fileManager;
        const Clock &clock;
        const OperatingSystem &system;
    };

    explicit TAppDelegate(const Services &services);
    ~TAppDelegate();
    TAppDelegate(const TAppDelegate &) = delete;
    TAppDelegate &operator=(const TAppDelegate &) = delete;

    /// The three steps of a start, to be called in this order. After the first, a program on a
    /// system that is too old is about to end, and the others do nothing.
    void awakeFromNib();
    void applicationWillFinishLaunching();
    void applicationDidFinishLaunching();

    /// Brings the menus up to date.
    void updateMenus();
    /// The roll-back command: choose a log, then roll it back. Does nothing while a rollback window
    /// is open, as does the next one.
    void rollBack();
    void rollBackLogWithURL(const TFileURL &log);

    /// Does the small disk work of windows, such as presets; outlives every document.
    WorkerQueue &worker() { return m_worker; }
    /// What is being found out about interrupted runs.
    const std::shared_ptr<RecoveryProgress> &recovery() const { return m_recovery; }

private:
    void initUserDefaults();
    void showFirstRun();
    void checkSystemVersion();
    void openNewDocumentIfNeeded();
    void recoverInterrupted();
    void offerNext();
    void offer(const RecoveredRun &run);
    bool isRollingBack() const { return m_chooser || m_runner; }
    void chooserEnded(const std::optional<TFileURL> &log);
    void runnerEnded();
    void postSafely(MainThread::Work work);

    const Services m_services;
    bool m_isSupported = true;
    std::deque<RecoveredRun> m_recovered; ///< to be told of
    std::unique_ptr<TRollBackWindowController> m_chooser;
    std::unique_ptr<TDoRollBackWindowController> m_runner;
    const std::shared_ptr<char> m_alive = std::make_shared<char>();
    WorkerQueue m_rollBackWorker; ///< a long rollback must not keep presets waiting
    WorkerQueue m_worker;
    const std::shared_ptr<RecoveryProgress> m_recovery = std::make_shared<RecoveryProgress>();
};
