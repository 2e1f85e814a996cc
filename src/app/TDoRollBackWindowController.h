// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/FolderGrants.h"
#include "document/TableCell.h"
#include "platform/BackgroundWork.h"
#include "rollback/RollbackRun.h"

#include <QHash>
#include <QObject>

#include <memory>
#include <vector>

/// The window that checks one rollback log against the disk, shows what can be undone, and undoes
/// it, without the window. Both passes run on the worker; leaving at any moment finishes the file
/// in hand and no other. Owned by the application delegate; main thread only.
class TDoRollBackWindowController : public QObject
{
    Q_OBJECT

public:
    struct Services
    {
        TDialogHost &host;
        MainThread &mainThread;
        WorkerQueue &worker; ///< outlives the controller
        Notifications &notifications;
        FileManager &fileManager; ///< outlives the worker
    };
    enum class State { Initial, Analysed, RollingBack, Complete };
    static constexpr int kEndCode = 1;
    static constexpr QLatin1StringView kOriginalColumn{"original"};
    static constexpr QLatin1StringView kCurrentColumn{"current"};
    static constexpr QLatin1StringView kStatusColumn{"status"};

    /// ended is called once, with the code, when the user leaves the window.
    TDoRollBackWindowController(const Services &services, std::function<void(int code)> ended);
    /// Tells the pass in hand to stop, and does not wait for it.
    ~TDoRollBackWindowController() override;

    /// Reads and checks a log. One that is invalid or cannot be read leaves the window as it is.
    void loadLog(const TFileURL &log);
    /// The roll-back button: asks for closed folders, then moves the files back.
    void rollBack();
    /// Ends a rollback after the file in hand; the window stays and shows what was done.
    void stop();
    /// True from then on; with the state complete, files may have been left as they were.
    bool wasStopped() const { return *m_stopped; }
    /// The cancel button, and closing the window: leaves it, without waiting for anything.
    void cancel();
    /// Whether to go from the last record to the first; may be changed until the rollback starts.
    void setReverse(bool reverse) { m_reverse = reverse; }
    bool isReverse() const { return m_reverse; }
    /// True when only the reverse order restores every file of this log.
    bool recommendsReverse() const { return m_recommendsReverse; }

    State state() const { return m_state; }
    const QString &statusText() const { return m_statusText; }
    /// The bar and the status text are shown and hidden together.
    bool isProgressShown() const { return m_progressShown; }
    /// 0 to 100.
    int progress() const { return m_progress; }
    bool rollBackButtonEnabled() const;
    QString rollBackButtonTitle() const;

    const std::vector<TRenameTRX> &theTRX() const { return m_records; }
    const TFolderAccessList &theFoldersWeUse() const { return m_folders; }
    /// Logs an unknown column and shows nothing for it.
    TableCell cell(qsizetype row, QLatin1StringView column) const;
    /// The problems to show beside a clicked cell; an empty list says that there is none, and null
    /// that nothing is shown at all.
    const TErrorLog *clicked(qsizetype row, qsizetype column) const;
    /// The name that a file was given back to because its old one is in use; empty for all others.
    QString otherName(qsizetype row) const { return m_otherNames.value(row); }

Q_SIGNALS:
    /// State, button, status text or visibility.
    void changed();
    void progressChanged();
    void tableReloaded();

private:
    struct Checked;
    struct Undone;
    using Records = std::vector<TRenameTRX>;

    static Checked processLogInBackground(const TFileURL &log, FileManager &fileManager,
                                          const RollbackRun::Progress &progress,
                                          const BackgroundWork::StopFlag &stop);
    /// Progress of a pass, on its way to loadProgressing.
    RollbackRun::Progress reporter();
    void loadProgressing(qsizetype current, qsizetype total);
    void loadFinished(Checked checked);
    void performBackgroundRollBack();
    void rollBackComplete(Undone undone);

    FileManager &m_fileManager;
    Notifications &m_notifications;
    QString m_log; ///< path
    std::function<void(int)> m_ended;
    bool m_hasEnded = false;
    State m_state = State::Initial;
    QString m_statusText;
    bool m_progressShown = true;
    int m_progress = 0;
    QHash<qsizetype, QString> m_otherNames; ///< by record
    bool m_isAsking = false;                ///< a panel for a folder is open
    /// Read by the rollback before each file.
    const std::shared_ptr<std::atomic<bool>> m_stopped = std::make_shared<std::atomic<bool>>(false);
    bool m_reverse = false;
    bool m_recommendsReverse = false;
    std::shared_ptr<RollbackRun> m_run; ///< the worker's while a pass is under way
    Records m_records;                  ///< as the last pass left them
    TFolderAccessList m_folders;
    FolderGrants m_grants;
    BackgroundWork m_work;
};
