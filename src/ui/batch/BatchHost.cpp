// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/batch/BatchHost.h"

#include "ui/batch/ApplicationCommands.h"
#include "ui/batch/BatchMenus.h"
#include "ui/batch/BatchWindow.h"
#include "ui/batch/EditorPopovers.h"
#include "ui/batch/StatusLine.h"
#include "ui/controls/BadgeButton.h"
#include "ui/table/FilePane.h"
#include "ui/tiles/RecipeCard.h"
#include "ui/windows/Dialogs.h"
#include "ui/windows/LogWindow.h"
#include "ui/windows/Placing.h"
#include "ui/windows/PresetRemovalWindow.h"
#include "ui/windows/ProgressSheet.h"
#include "ui/windows/WindowKeys.h"

#include <QDialog>

#include <algorithm>

namespace {

/// The sheet that the window waits for; null when there is none.
const QDialog *sheetOver(const QWidget &window)
{
    const QList<QDialog *> dialogs = window.findChildren<QDialog *>();
    const auto found = std::find_if(dialogs.begin(), dialogs.end(), [](const QDialog *dialog) {
        return dialog->isVisible() && dialog->windowModality() == Qt::WindowModal;
    });
    return found == dialogs.end() ? nullptr : *found;
}

} // namespace

BatchHost::BatchHost(BatchWindow &window)
    : m_window(window)
{
}

BatchHost::~BatchHost()
{
    closeLogs();
}

void BatchHost::closeLogs()
{
    for (const QPointer<LogWindow> &log : std::exchange(m_logs, {})) {
        if (log)
            log->close();
    }
}

void BatchHost::ask(const Question &question, Answered answered)
{
    // What was asked for earlier may come while the user is at something else.
    if (const QDialog *sheet = sheetOver(m_window))
        QObject::connect(
            sheet, &QObject::destroyed, &m_window,
            [this, question, answered] { ask(question, answered); }, Qt::QueuedConnection);
    else
        Dialogs::ask(&m_window, question, std::move(answered));
}

void BatchHost::chooseFolder(const FolderPanel &panel, Chosen chosen)
{
    Dialogs::chooseFolder(&m_window, panel, std::move(chosen));
}

void BatchHost::chooseSaveFile(const SavePanel &panel, Chosen chosen)
{
    Dialogs::chooseSaveFile(&m_window, panel, std::move(chosen));
}

void BatchHost::setWindowTitle(const QString &title)
{
    m_window.setWindowTitle(title);
}

void BatchHost::setStatus(const QString &text)
{
    m_window.m_status->setText(text);
}

void BatchHost::setBusy(bool busy)
{
    m_window.m_status->setBusy(busy);
}

void BatchHost::showProgress(qint64 currVal, qint64 maxVal)
{
    m_window.m_status->showProgress(currVal, maxVal);
}

void BatchHost::hideProgress()
{
    m_window.m_status->hideProgress();
}

void BatchHost::setRenameBadge(qint64 criticals)
{
    m_window.m_status->setBadge(criticals);
}

void BatchHost::setRollBackEnabled(bool enabled)
{
    m_window.m_status->rollBackButton()->setEnabled(enabled);
    if (m_window.m_menus != nullptr)
        m_window.m_menus->setRollBackEnabled(enabled);
}

void BatchHost::setColorCodeChecked(bool checked)
{
    if (m_window.m_menus != nullptr)
        m_window.m_menus->setColorCodeChecked(checked);
}

void BatchHost::resetSortMenu()
{
    // The sort menu keeps no choice, so it always stands at its first item.
}

void BatchHost::selectFiles(const std::vector<qsizetype> &rows)
{
    m_window.m_files->selectRows(rows);
}

void BatchHost::focusFileTable()
{
    m_window.m_files->focusTable();
}

void BatchHost::showErrorLog(const TErrorLog &log)
{
    m_window.showProblemCounts(); // the list points to them
    m_window.m_editors->showProblems(log, m_window.m_status->problemsAnchor());
}

void BatchHost::editRule(const TRulePtr &rule, const QVariant &)
{
    m_window.m_editors->editRule(rule);
}

void BatchHost::startDupeDrag(const TRulePtr &rule, const QVariant &)
{
    m_window.m_recipe->startDupeDrag(rule);
}

void BatchHost::showProgressSheet(const std::shared_ptr<TProgressSheetController> &sheet)
{
    m_window.m_editors->closeAll();
    m_sheet = new ProgressSheet(sheet, &m_window);
    m_sheet->open();
}

void BatchHost::progressSheetChanged()
{
    if (m_sheet)
        m_sheet->refresh();
}

void BatchHost::endProgressSheet()
{
    if (!m_sheet)
        return;
    m_sheet->hide();
    m_sheet->deleteLater();
    m_sheet = nullptr;
}

void BatchHost::showLogWindow(const std::shared_ptr<TLogWindowController> &log)
{
    auto *window = new LogWindow(log);
    m_logs.push_back(window);
    WindowKeys::add(*window,
                    [&application = m_window.m_application] { application.quitRequested(); });
    Placing::centre(*window, m_window);
    window->show();
}

void BatchHost::setPresetNames(const QStringList &names)
{
    m_window.presetsCame(names);
}

void BatchHost::askPresetName(const QString &suggestion,
                              std::function<void(const std::optional<QString> &)> answered)
{
    m_window.m_editors->askPresetName(suggestion, std::move(answered));
}

void BatchHost::showPresetRemoval()
{
    auto *removal =
        new PresetRemovalWindow({m_window.m_services.mainThread, m_window.m_services.worker,
                                 m_window.m_services.notifications},
                                m_window.m_services.presets, &m_window); // deletes itself
    removal->open();
}

void BatchHost::rollBackLogWithURL(const TFileURL &log)
{
    m_window.m_application.rollBackLog(log);
}

void BatchHost::hideWindow()
{
    m_window.m_editors->closeAll();
    const QList<QDialog *> sheets =
        m_window.findChildren<QDialog *>(QString(), Qt::FindDirectChildrenOnly);
    for (QDialog *sheet : sheets) {
        sheet->hide();
        sheet->deleteLater();
    }
    closeLogs();
    m_window.hide();
}
