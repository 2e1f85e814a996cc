// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDocumentHost.h"
#include "support/ScriptedDialogs.h"

/// A batch window for tests: the last value of everything it shows, every call as one line, and
/// scripted answers.
class ScriptedHost : public ScriptedDialogs<TDocumentHost>
{
public:
    QString title;
    QString status;
    QStringList statuses; ///< every one, in order
    bool busy = false;
    qint64 badge = -1;
    bool rollBackEnabled = false;
    bool colorCodeChecked = false;
    std::vector<qsizetype> selection;
    TErrorLog shownLog;
    QStringList presetNames;
    std::deque<std::optional<QString>> presetAnswers;
    std::shared_ptr<TProgressSheetController> sheet; ///< null while none is shown
    std::shared_ptr<TLogWindowController> logWindow; ///< the last one
    QStringList sheetTexts;                          ///< of every change of the sheet
    std::function<void()> onSheetShown;
    std::function<void()> onSheetEnded;
    bool hidden = false;

    void setWindowTitle(const QString &text) override { title = text; }
    void setStatus(const QString &text) override
    {
        status = text;
        statuses += text;
    }
    void setBusy(bool isBusy) override
    {
        busy = isBusy;
        record(isBusy ? QStringLiteral("busy") : QStringLiteral("not busy"));
    }
    void showProgress(qint64 currVal, qint64 maxVal) override
    {
        record(QStringLiteral("progress %1/%2").arg(currVal).arg(maxVal));
    }
    void hideProgress() override { record(QStringLiteral("hide progress")); }
    void setRenameBadge(qint64 criticals) override
    {
        badge = criticals;
        record(QStringLiteral("badge %1").arg(criticals));
    }
    void setRollBackEnabled(bool enabled) override { rollBackEnabled = enabled; }
    void setColorCodeChecked(bool checked) override { colorCodeChecked = checked; }
    void resetSortMenu() override { record(QStringLiteral("reset sort menu")); }
    void selectFiles(const std::vector<qsizetype> &rows) override { selection = rows; }
    void focusFileTable() override { record(QStringLiteral("focus file table")); }
    void showErrorLog(const TErrorLog &log) override
    {
        shownLog = log;
        record(QStringLiteral("error log %1").arg(log.count()));
    }
    void editRule(const TRulePtr &rule, const QVariant &view) override
    {
        record(QStringLiteral("edit rule ") + rule->name() + view.toString());
    }
    void startDupeDrag(const TRulePtr &rule, const QVariant &view) override
    {
        record(QStringLiteral("drag copy of ") + rule->name() + view.toString());
    }
    void showProgressSheet(const std::shared_ptr<TProgressSheetController> &controller) override
    {
        sheet = controller;
        record(QStringLiteral("progress sheet %1: ").arg(controller->maxNum()) +
               controller->statusText());
        if (onSheetShown)
            onSheetShown();
    }
    void progressSheetChanged() override { sheetTexts += sheet->statusText(); }
    void endProgressSheet() override
    {
        record(QStringLiteral("end progress sheet"));
        sheet.reset();
        if (onSheetEnded)
            onSheetEnded();
    }
    void showLogWindow(const std::shared_ptr<TLogWindowController> &log) override
    {
        logWindow = log;
        record(QStringLiteral("log window ") + log->title());
    }
    void setPresetNames(const QStringList &names) override { presetNames = names; }
    void askPresetName(const QString &suggestion,
                       std::function<void(const std::optional<QString> &)> answered) override
    {
        record(QStringLiteral("preset name: ") + suggestion);
        if (presetAnswers.empty())
            return;
        const std::optional<QString> name = presetAnswers.front();
        presetAnswers.pop_front();
        give([answered, name] { answered(name); });
    }
    void showPresetRemoval() override { record(QStringLiteral("preset removal")); }
    void rollBackLogWithURL(const TFileURL &log) override
    {
        record(QStringLiteral("roll back ") + log.path());
    }
    void hideWindow() override
    {
        hidden = true;
        record(QStringLiteral("hide window"));
    }
};
