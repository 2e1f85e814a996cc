// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDocumentHost.h"

#include <QPointer>

class BatchWindow;
class LogWindow;
class ProgressSheet;

/// The window of a batch as its document sees it. Owned by the window; says nothing of its own.
class BatchHost : public TDocumentHost
{
public:
    explicit BatchHost(BatchWindow &window);
    ~BatchHost() override;

    void ask(const Question &question, Answered answered = {}) override;
    void chooseFolder(const FolderPanel &panel, Chosen chosen) override;
    void chooseSaveFile(const SavePanel &panel, Chosen chosen) override;

    void setWindowTitle(const QString &title) override;
    void setStatus(const QString &text) override;
    void setBusy(bool busy) override;
    void showProgress(qint64 currVal, qint64 maxVal) override;
    void hideProgress() override;
    void setRenameBadge(qint64 criticals) override;
    void setRollBackEnabled(bool enabled) override;
    void setColorCodeChecked(bool checked) override;
    void resetSortMenu() override;
    void selectFiles(const std::vector<qsizetype> &rows) override;
    void focusFileTable() override;
    void showErrorLog(const TErrorLog &log) override;
    void editRule(const TRulePtr &rule, const QVariant &view) override;
    void startDupeDrag(const TRulePtr &rule, const QVariant &view) override;
    void showProgressSheet(const std::shared_ptr<TProgressSheetController> &sheet) override;
    void progressSheetChanged() override;
    void endProgressSheet() override;
    void showLogWindow(const std::shared_ptr<TLogWindowController> &log) override;
    void setPresetNames(const QStringList &names) override;
    void askPresetName(const QString &suggestion,
                       std::function<void(const std::optional<QString> &name)> answered) override;
    void showPresetRemoval() override;
    void rollBackLogWithURL(const TFileURL &log) override;
    void hideWindow() override;

private:
    void closeLogs();

    BatchWindow &m_window;
    QPointer<ProgressSheet> m_sheet;
    std::vector<QPointer<LogWindow>> m_logs; ///< attached to the batch, gone with it
};
