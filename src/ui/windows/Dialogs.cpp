// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/Dialogs.h"

#include "ui/windows/FilePanel.h"
#include "ui/windows/QuestionDialog.h"

#include <QApplication>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// Shown beside an application-modal window, a dialog of its own would be blocked by it.
Qt::WindowModality modalityFor(const QWidget *window)
{
    if (window != nullptr)
        return Qt::WindowModal;
    return QApplication::activeModalWidget() != nullptr ? Qt::ApplicationModal : Qt::NonModal;
}

void show(QDialog &dialog, const QWidget *window)
{
    dialog.setWindowModality(modalityFor(window));
    dialog.show();
    dialog.raise();
    dialog.activateWindow();
}

} // namespace

namespace Dialogs {

void ask(QWidget *window, const TDialogHost::Question &question, TDialogHost::Answered answered)
{
    auto dialog = std::make_unique<QuestionDialog>(question, std::move(answered), window);
    show(*dialog.release(), window); // deletes itself when answered
}

void chooseFolder(QWidget *window, const TDialogHost::FolderPanel &panel,
                  TDialogHost::Chosen chosen)
{
    auto dialog = std::make_unique<FilePanel>(std::move(chosen), window);
    dialog->askForFolder(panel);
    show(*dialog.release(), window); // deletes itself when answered
}

void chooseSaveFile(QWidget *window, const TDialogHost::SavePanel &panel,
                    TDialogHost::Chosen chosen)
{
    auto dialog = std::make_unique<FilePanel>(std::move(chosen), window);
    dialog->askForNewFile(panel);
    show(*dialog.release(), window); // deletes itself when answered
}

} // namespace Dialogs
