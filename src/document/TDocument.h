// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/TFolderAccess.h"
#include "commonprocs/URLListProcessing.h"
#include "document/AnalysisRun.h"
#include "document/BatchSorting.h"
#include "document/FolderGrants.h"
#include "document/RenameGuard.h"
#include "document/TDocumentAnalysis.h"
#include "document/TDocumentFactCollector.h"
#include "document/TDocumentForecasts.h"
#include "document/TDocumentHost.h"
#include "document/TDocumentMail.h"
#include "document/TDocumentPresets.h"
#include "document/TDocumentServices.h"
#include "document/TRenameRun.h"
#include "platform/RunsPool.h"
#include "rollback/TRenameTRX.h"

#include <QMimeData>
#include <QObject>
#include <QUndoStack>

#include <deque>
#include <memory>
#include <optional>
#include <stdexcept>
#include <vector>

class TDocumentDrop;
class TDocumentRenaming;

/// "UnimplementedMethod": a batch is never saved to a file nor read from one.
class TUnimplementedMethod : public std::logic_error
{
public:
    using std::logic_error::logic_error;
};

/// One batch: its files, naming rules, extension handler and options, the undo of their edits, and
/// the analysis and rename runs over them. Without widgets: what is shown and asked goes through
/// the host, and lists are followed through the signals.
///
/// Belongs to the main thread, like every entry and rule in its lists; workers get values. Owned by
/// whoever opened it. May be destroyed at any moment: a run then ends with the file in hand and
/// writes its log. close() does the same without waiting.
class TDocument : public QObject, private TAnalyseMaster
{
    Q_OBJECT

public:
    static constexpr QLatin1StringView kRuleDoubleClicked{"ruleDoubleClicked"};
    static constexpr QLatin1StringView kDeleteRule{"deleteRule"};
    static constexpr QLatin1StringView kStartDupeDrag{"startDupeDrag"};
    static constexpr QLatin1StringView kTheView{"theView"};
    /// Holds the document (TDocument *) that a rule notification is for.
    static constexpr QLatin1StringView kTheData{"theData"};

    /// The host is not owned and outlives the document.
    TDocument(TDocumentHost &host, TDocumentServices services, QObject *parent = nullptr);
    ~TDocument() override;

    /// Hides the window at once and stops everything; a rename finishes the file in hand and its
    /// logs. closed() follows, from within the call when nothing was under way.
    void close();
    bool isClosing() const { return m_isClosing; }

    [[noreturn]] QByteArray dataOfType(const QString &typeName) const;
    [[noreturn]] bool readFromData(const QByteArray &data, const QString &typeName);

    const TFileList &sourceObjectArray() const { return m_sourceObjectArray; }
    const TRuleList &ruleArray() const { return m_ruleArray; }
    TExtensionHandler &theExtensionHandler() { return *m_theExtensionHandler; }
    const TExtensionHandler &theExtensionHandler() const { return *m_theExtensionHandler; }
    const TOptions &theOptions() const { return m_theOptions; }
    const TFolderAccessList &theFoldersWeUse() const { return m_theFoldersWeUse; }
    /// For the view in which folders are granted.
    TFolderAccessList &theFoldersWeUse() { return m_theFoldersWeUse; }
    /// The problems of the last analysis; nothing before the first one.
    const std::optional<TErrorLog> &errorLog() const { return m_errorLog; }
    const QString &myUUID() const { return m_myUUID; }
    qint64 remainingAOps() const { return m_remainingAOps; }
    qint64 remainingRenameOps() const { return m_remainingRenameOps; }
    qint64 renamingWarnings() const { return m_renamingWarnings; }
    qint64 renamingCriticals() const { return m_renamingCriticals; }
    const QString &renameTextLog() const { return m_renameTextLog; }
    /// The log of the last run; invalid before the first one.
    const TFileURL &rollbackURL() const { return m_rollbackURL; }
    bool liveUpdate() const { return m_liveUpdate; }
    bool colorCode() const { return m_colorCode; }
    bool duplicatesAreCritical() const { return m_duplicatesAreCritical; }
    bool readyToGo() const { return m_readyToGo; }
    /// Name and rules of every preset, in the order of the pop-up. Not once the document closes.
    const TDocumentPresets::Table &thePresets() const { return m_presets->thePresets(); }
    QUndoStack &undoStack() { return m_undoStack; }
    /// A rename run is moving files.
    bool isRenaming() const { return m_isRenaming; }
    /// A drop is still being added.
    bool isReceivingDrop() const { return !m_drops.empty(); }
    /// What the run would write for an entry of the batch, or has written; nothing while that is
    /// not known, and when it would be no other name than the one that is shown.
    std::optional<ForecastStepper::Forecast> forecastFor(const TFileObject &file) const
    {
        return m_forecasts.find(file);
    }

    /// The names that are shown are from before the last change, and none are being worked out:
    /// without live update, a test run brings the new ones. A change of this comes with
    /// filesChanged().
    bool areNamesOld() const { return m_areNamesOld; }
    /// What became of the last run, in numbers of files.
    struct RunOutcome
    {
        qsizetype renamed = 0;
        qsizetype failed = 0;
        qsizetype restored = 0;   ///< by rollbacks since
        bool canBeUndone = false; ///< it has left a log
    };
    /// While files of that run are in the list; nothing before it. A change of this comes with
    /// filesChanged().
    std::optional<RunOutcome> runOutcome() const;

    // Files
    /// A drop on the file table. False when the pasteboard holds nothing that is accepted.
    bool tableViewAcceptDrop(const QMimeData &data, qsizetype row);
    /// The same for locations that come from a panel or the command line.
    void addFiles(const TFileURLs &urls, qsizetype row);
    void moveRows(const std::vector<qsizetype> &rows, qsizetype beforeRow);
    /// Rows are ascending.
    void removeFiles(const std::vector<qsizetype> &rows);
    /// An item of the sort menu, 1 to 14.
    void sortNow(int item);
    /// A click on a column header: "fileName", "targetName", "creationDate", "modificationDate",
    /// "size", "parent" or "errLevel".
    void sortByColumn(const QString &key, bool ascending);
    void doSearch(const QString &text);
    void idleStatus();
    /// Reads the metadata that cancelWork() has left out.
    void gatherMissing();
    /// Metadata were left out that gatherMissing() reads.
    bool lacksMetadata() const { return m_lacksMetadata; }

    /// A drop, the gathering of metadata or a test run, which cancelWork() ends.
    bool hasWorkToCancel() const
    {
        return isReceivingDrop() || m_remainingAOps > 0 || m_testRun != nullptr;
    }
    /// What has come and was read so far stays; the error log stays that of the last whole run.
    void cancelWork();

    static bool hasProcessedFiles(const TFileList &files);
    static TFileList stripProcessed(const TFileList &files);
    static bool isPathInArray(const QString &path, const TFileURLs &urls);
    TFileURLs removeDupesFromArray(const TFileURLs &urls);
    static bool isURLUniqueIn(const TFileURL &url, const TFileList &files);

    // Rules
    /// A drop on the rule editor. False when the pasteboard holds nothing that is accepted.
    bool ruleEditorAcceptDrop(const QMimeData &data, qsizetype position);
    void addRules(const TRuleList &rules, qsizetype position);
    /// Positions are ascending. A drop onto the moved rules themselves does nothing.
    void moveRules(const std::vector<qsizetype> &positions, qsizetype beforePosition);
    void deleteRule(const TRulePtr &rule) { deleteRules({rule}); }
    /// All of them in one step; those that are not in the list are passed over.
    void deleteRules(const TRuleList &rules);
    /// The editor of a rule opens and closes; what changed in between is one undoable step. The
    /// editor sets the rule's properties and posts "ruleChanged".
    void beginRuleEdit(const TRulePtr &rule);
    void endRuleEdit();
    /// Exchanges a rule's properties with the given ones, which become those from before.
    void undoRuleChangeForRuleWithProperties(const TRulePtr &rule, QVariantMap &properties);
    /// A palette button was clicked that should be dragged.
    void paletteButtonClicked();
    /// The names of the rules, joined.
    QString rulesToString() const;
    static TRuleList copyArrayViaEncode(const TRuleList &rules);

    // Extension handler and options
    /// As for rules; the editor changes the handler and calls extensionHandlerEdited.
    void beginExtensionEdit();
    void endExtensionEdit();
    void extensionHandlerEdited();
    /// All nine settings, the persistent five and the others.
    QVariantMap extensionHandlerProperties() const;
    void undoRuleChangeForExtensionHandlerWithProperties(QVariantMap &properties);
    void setTheOptions(const TOptions &options);
    void setLiveUpdate(bool liveUpdate);
    void setDuplicatesAreCritical(bool critical);
    void toggleColorCode();

    // Presets
    void loadPresetsFromDisk();
    /// An item of the pop-up: 0 saves, 4 and above are presets, the others do nothing.
    void rulePresetChosen(qsizetype index);
    void saveRuleAsPreset();
    void deletePresets();

    // Analysis
    void doBackgroundRun();
    void doBackgroundRunIfUpdate();
    void fullRun() { fullRunWithUpdate(true); }
    void fullRunWithUpdate(bool update);
    void partialRunFor(const TFileList &files, bool update);
    /// A full run, whose log is then shown; over a long list it goes on in portions, and begins
    /// anew when the batch changes meanwhile.
    void testRun();
    void showTestRunLog();
    static qsizetype numberOfErrorsWithType(int errClass, const TErrorLog &log);
    /// True from a change until the names and problems that belong to it are there.
    bool isAnalysing() const
    {
        return m_testRun || m_analysis.isRunning() || (m_facts.isCollecting() && !m_isForecastOnly);
    }

    // Rename
    /// The names are not those of all files yet, or not the final ones.
    bool isWorkingOutNames() const
    {
        return isReceivingDrop() || m_remainingAOps > 0 || isAnalysing();
    }
    /// The checks in their order, the confirmation, and the run. While names are being worked out
    /// it waits for them, as it does for files that are being received or gathered.
    void runRename();
    /// What runRename() would find now, whether or not it would wait for it. Looks at every entry.
    RenameGuard::Answer renameCheck() const { return guard().check(); }
    /// Writes the log of a run, also of an empty one, and makes it the one that rollBackThis
    /// undoes.
    void saveRollBackLog(const std::vector<TRenameTRX> &transactions);
    /// Undoes the last run of this document.
    void rollBackThis();

Q_SIGNALS:
    void filesAboutToBeInserted(qsizetype first, qsizetype last);
    void filesInserted();
    void filesAboutToBeRemoved(qsizetype first, qsizetype last);
    void filesRemoved();
    void filesAboutToBeReordered();
    /// The new row of every old one.
    void filesReordered(const std::vector<qsizetype> &newRows);
    void filesAboutToBeReplaced();
    void filesReplaced();
    /// What rows show has changed; first is greater than last when there are none.
    void filesChanged(qsizetype first, qsizetype last);
    /// The rule list is another one.
    void rulesChanged();
    /// One rule of the list shows something else.
    void ruleChanged(const TRulePtr &rule);
    void extensionHandlerChanged();
    void optionsChanged();
    void foldersChanged();
    void errorLogChanged();
    void readyToGoChanged(bool ready);
    void renamingChanged(bool isRenaming);
    /// hasWorkToCancel() or lacksMetadata() may be another.
    void workChanged();
    /// Nothing is under way any more; the owner may destroy the document.
    void closed();

private:
    struct PendingDrop
    {
        TFileURLs urls;
        qsizetype row;
    };
    struct TestRun;
    struct RuleEdit
    {
        TRulePtr rule;
        QVariantMap before;
    };

    /// Calls the host unless the window has gone.
    template <typename Method, typename... Arguments>
    void tell(Method method, Arguments &&...arguments)
    {
        if (m_host != nullptr)
            (m_host->*method)(std::forward<Arguments>(arguments)...);
    }
    static QString text(const char *source, std::initializer_list<QString> arguments = {});
    void setStatus(const char *source, std::initializer_list<QString> arguments = {});
    void subscribe(QLatin1StringView name, void (TDocument::*handler)(const QVariantMap &));
    TRulePtr ruleOfNotification(const QVariantMap &userInfo) const;
    void ruleDoubleClicked(const QVariantMap &userInfo);
    void deleteRuleNotified(const QVariantMap &userInfo);
    void startDupeDrag(const QVariantMap &userInfo);
    void gotAuthorized(const QVariantMap &userInfo);
    void ruleChangedNotified(const QVariantMap &userInfo);
    void rolledBack(const QVariantMap &userInfo);
    void setReadyToGo(bool ready);

    // TDocumentReceiving.cpp
    void beginNextDrop();
    void addDropped(const TFileItem &item, qsizetype total);
    void showDropped();
    void dropFinished();
    void cancelDrops();

    // TDocumentWork.cpp
    void gather();
    void gatheringComplete();
    void gatherOnlyListed();
    void cancelTestRun();

    // TDocumentFiles.cpp
    void listChanged();
    void batchChanged() { ++m_batchVersion; }
    void redisplay();
    void recordFileChange(const char *name, TFileList before, bool analyse = true);
    void undoFileArrayChange(TFileList &files);
    /// Takes over a list; tells how it differs from the former one.
    void setFiles(TFileList files);
    void reorderFiles(const std::vector<qsizetype> &order);
    void removeRows(const std::vector<qsizetype> &rows);

    // TDocumentSorting.cpp
    std::vector<qsizetype> sorted(const BatchSorting::Order &order, const QString &textKey) const;

    // TDocumentRules.cpp
    void setRules(const char *name, TRuleList rules);
    void undoRuleArrayChange(TRuleList &rules);

    // TDocumentRuns.cpp
    TDocumentAnalysis::Output analysisOutput();
    void startWhenCollected(bool forecastOnly);
    void startBackgroundRun();
    void orderChanged();
    bool updateNamesAge();
    void followNamesAge();
    TRuleList preparedCopy() const;
    TDocumentAnalysis::Input analysisInput();
    AnalysisRun analysisRun();
    void AOpComplete(TAnalyseOperation &operation) override;
    void backgroundRunCompleteForLog(TErrorLog &log);
    void applyResults(qsizetype first, std::vector<TAnalysisResult> &results,
                      const TFileList &files);
    void applyForecasts(qsizetype first, std::vector<ForecastStepper::Forecast> &forecasts,
                        const TFileList &files);
    void cancelAnalysis();

    // TDocumentTestRun.cpp
    void fullRunComplete(bool update);
    void beginTestRun();
    void continueTestRun();
    void endTestRun();
    void testRunComplete();

    // TDocumentRename.cpp
    RenameGuard guard() const;
    void askForFolder();
    void prepareRename();
    void awaitRecovery(int looks);
    void tellOfRecovery();
    void makePlan();
    void confirmRename(const QString &problem);
    void askOnce(const TDialogHost::Question &question, TDialogHost::Answered answered);
    void renameAnswered(qsizetype button);
    void startRename();
    void finishedRenameOp(TFileObject &file, const TRenameReport &report);
    void processingFinished(const TRenameSummary &summary);
    void tellWhereItStopped(qsizetype renamed, const char *status);
    void endProgressSheet();
    void setRollbackURL(const TFileURL &log);

    TDocumentHost *m_host; ///< null once the window has gone
    TDocumentServices m_services;
    TDocumentMailPtr m_mail;
    std::vector<Notifications::Subscription> m_subscriptions;
    QUndoStack m_undoStack;
    QString m_myUUID;

    TFileList m_sourceObjectArray;
    quint64 m_listVersion = 0;  ///< counts the changes of the list
    quint64 m_batchVersion = 0; ///< counts all changes that a run depends on
    TFolderAccessList m_theFoldersWeUse;
    std::unique_ptr<FolderGrants> m_grants; ///< null once the window has gone
    std::deque<PendingDrop> m_drops;        ///< the first one is under way
    std::unique_ptr<TDocumentDrop> m_drop;
    qsizetype m_dropRow = 0;                  ///< where the next dropped file goes
    quint64 m_dropVersion = 0;                ///< of the list when that row was right
    std::shared_ptr<TFileObject> m_dropAfter; ///< the file before that row
    TFileList m_dropped;                      ///< made, but not in the list yet
    TErrorLog m_droppedProblems;              ///< of those, so that they share their texts
    RunsPool m_droppedRuns;                   ///< of their names
    qsizetype m_droppedLength = 0;            ///< of the last of their names

    TRuleList m_ruleArray;
    TRuleList m_theAccumulator;
    std::unique_ptr<TExtensionHandler> m_theExtensionHandler;
    TOptions m_theOptions;
    std::optional<RuleEdit> m_ruleEdit;
    std::optional<QVariantMap> m_extensionEdit;  ///< the settings from before
    std::unique_ptr<TDocumentPresets> m_presets; ///< null once the window has gone

    std::optional<TErrorLog> m_errorLog;
    TDocumentFactCollector m_facts;
    bool m_isForecastOnly = false;      ///< what facts are collected for
    std::shared_ptr<TestRun> m_testRun; ///< null when none is under way
    quint64 m_testRunVersion = 0;       ///< of the batch that it is over
    TDocumentForecasts m_forecasts;
    quint64 m_analysisVersion = 0; ///< of the list that the newest analysis is over
    quint64 m_analysedVersion = 0; ///< of the batch, likewise
    quint64 m_namesVersion = 0;    ///< of the batch that the shown names are of
    bool m_areNamesOld = false;
    qint64 m_remainingAOps = 0;
    bool m_lacksMetadata = false; ///< because the gathering was cancelled
    bool m_hasUngathered = false; ///< files left the list before they were gathered
    bool m_liveUpdate = true;
    bool m_colorCode = true;
    bool m_duplicatesAreCritical = false;
    bool m_readyToGo = false;

    std::shared_ptr<TProgressSheetController> m_theProgressSheet;
    QString m_renameTextLog;
    qint64 m_remainingRenameOps = 0;
    qint64 m_renamingWarnings = 0;
    qint64 m_renamingCriticals = 0;
    std::optional<RunOutcome> m_outcome; ///< nothing before the first run
    TFileURL m_rollbackURL;
    bool m_isRenaming = false;
    bool m_isPreparing = false;   ///< the plan of a run is being made
    bool m_renameWanted = false;  ///< as soon as the names are known
    quint64 m_confirmVersion = 0; ///< of the batch that the confirmation is about
    quint64 m_confirmation = 0;   ///< number of the newest confirmation
    bool m_isClosing = false;

    TDocumentGathering m_gathering;
    TDocumentAnalysis m_analysis;
    std::unique_ptr<TDocumentRenaming> m_renaming;
};
