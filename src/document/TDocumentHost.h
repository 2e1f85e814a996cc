// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDialogHost.h"
#include "document/TErrorLog.h"
#include "document/TLogWindowController.h"
#include "document/TProgressSheetController.h"
#include "rules/TRuleModel.h"

#include <QVariant>

#include <memory>

/// What one batch asks of its window. The document's lists are followed through its signals; this
/// door carries what is shown and asked beside them. Main thread only. The host is not owned by the
/// document and outlives it; once the document has called hideWindow it calls nothing else.
class TDocumentHost : public TDialogHost
{
public:
    virtual void setWindowTitle(const QString &title) = 0;
    virtual void setStatus(const QString &text) = 0;
    /// The busy indicator.
    virtual void setBusy(bool busy) = 0;
    /// Shows or moves the progress bar of the window.
    virtual void showProgress(qint64 currVal, qint64 maxVal) = 0;
    virtual void hideProgress() = 0;
    /// The number on the rename button; none at 0.
    virtual void setRenameBadge(qint64 criticals) = 0;
    virtual void setRollBackEnabled(bool enabled) = 0;
    /// The check mark of "Color Code Results".
    virtual void setColorCodeChecked(bool checked) = 0;
    /// The sort menu shows its first item again.
    virtual void resetSortMenu() = 0;
    /// The selection of the file table becomes exactly these rows (ascending; may be empty).
    virtual void selectFiles(const std::vector<qsizetype> &rows) = 0;
    virtual void focusFileTable() = 0;
    /// The list of problems in a popover.
    virtual void showErrorLog(const TErrorLog &log) = 0;

    /// Opens the rule's editor in a popover; view is what the notification named, and may be
    /// invalid.
    virtual void editRule(const TRulePtr &rule, const QVariant &view) = 0;
    /// Starts dragging a copy of the rule.
    virtual void startDupeDrag(const TRulePtr &rule, const QVariant &view) = 0;

    /// Opens the sheet over the window; it lives until endProgressSheet.
    virtual void showProgressSheet(const std::shared_ptr<TProgressSheetController> &sheet) = 0;
    /// Bar and text changed; painting may be put off and joined.
    virtual void progressSheetChanged() = 0;
    virtual void endProgressSheet() = 0;
    /// Opens a window of its own for the log of a run.
    virtual void showLogWindow(const std::shared_ptr<TLogWindowController> &log) = 0;

    /// The names in the preset pop-up, after its four fixed items.
    virtual void setPresetNames(const QStringList &names) = 0;
    /// A popover with a name field, filled with the suggestion. Gets nothing when cancelled.
    virtual void
    askPresetName(const QString &suggestion,
                  std::function<void(const std::optional<QString> &name)> answered) = 0;
    /// Opens the window in which presets are removed.
    virtual void showPresetRemoval() = 0;
    /// The application's rollback of one log.
    virtual void rollBackLogWithURL(const TFileURL &log) = 0;

    /// The window goes away at once, with its sheets and popovers.
    virtual void hideWindow() = 0;
};
