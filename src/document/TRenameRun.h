// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TMetadataSource.h"
#include "document/TOptions.h"
#include "document/TRenameOperation.h"
#include "platform/Clock.h"
#include "platform/FileManager.h"
#include "platform/TResult.h"

#include <atomic>
#include <functional>
#include <memory>
#include <span>

/// What became of one file.
struct TRenameReport
{
    qsizetype index = 0;
    QString finalName; ///< as written, or as it would have been
    TErrorLog errors;  ///< the operation's list, which becomes the file's
    QString failure;   ///< why it failed, for people; empty otherwise
    bool success = false;
    bool warning = false;   ///< the name had to be changed (empty or taken)
    bool critical = false;  ///< the move failed
    bool unchanged = false; ///< left out because its name would not change
};

struct TRenameSummary
{
    qsizetype renamed = 0;
    qsizetype failed = 0;
    qsizetype unchanged = 0;
    qsizetype warnings = 0;
    qsizetype criticals = 0;
    bool interrupted = false;
    TDate finished;      ///< as all logs have it
    QString rollbackLog; ///< path; empty when none could be written
    QString problem;     ///< why the run stopped or has no log; empty otherwise
};

/// One live run over a batch. Moves happen on the calling thread in list order; names are evaluated
/// ahead, and reports and logs follow behind, on a thread of the run's own. Every run leaves a
/// rollback log; a journal with the whole plan is synced before the first move.
class TRenameRun
{
public:
    struct Settings
    {
        TRuleList rules;                                     ///< a prepared copy for this run only
        std::unique_ptr<TExtensionHandler> extensionHandler; ///< copyForRun
        TOptions options;
        QString logsFolder;     ///< where rollback logs go; empty: no rollback log, no journal
        bool confirmed = false; ///< nobody will be asked: names are evaluated beside the plan
    };
    /// Lines of the human-readable log, in order; called on the run's own thread but never by two
    /// at once. May be empty.
    using TextLog = std::function<void(const QString &)>;
    using Report = std::function<void(const TRenameReport &)>;

    /// The doors and the files are not owned and must outlive the run.
    TRenameRun(FileManager &fileManager, const Clock &clock, std::span<const TFileItem> files,
               Settings settings);
    ~TRenameRun();

    /// Files that cannot be read again or whose facts changed are still tried; the move decides.
    void setMetadataSource(TMetadataSource *source) { m_metadata = source; }
    void setTextLog(TextLog textLog) { m_textLog = std::move(textLog); }
    /// Makes the journal and syncs the plan; nothing has moved yet, and a run that goes no further
    /// leaves nothing. A failure's message says why the run could not be undone.
    TResult<bool> prepare();
    /// To be called once the user has agreed: from here on a run that is cut off is recovered. A
    /// failure's message says why the run could not be undone; called after that, run keeps no
    /// record.
    TResult<bool> begin();
    /// Begins unless that is done already; when it is impossible nothing moves, and the summary's
    /// problem says why. Runs to the end or until abort is set (read before each move). report is
    /// called on the run's own thread for each file, in list order and never by two at once; it may
    /// lag behind the moves, and the last has come when this returns.
    TRenameSummary run(const Report &report, const std::atomic<bool> &abort);

private:
    class Private;
    FileManager &m_fileManager;
    const Clock &m_clock;
    std::span<const TFileItem> m_files;
    Settings m_settings;
    TMetadataSource *m_metadata = nullptr;
    TextLog m_textLog;
    std::unique_ptr<Private> m_private;
};
