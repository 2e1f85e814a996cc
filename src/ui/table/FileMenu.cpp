// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/table/FileMenu.h"

#include "ui/controls/Icons.h"

using namespace Qt::StringLiterals;

FileMenu::FileMenu(bool hasProblems, QWidget *parent)
    : QMenu(parent)
{
    setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [this](QLatin1StringView icon, const QString &text,
                            void (FileMenu::*chosen)()) {
        QAction *action = addAction(Icons::icon(icon), text);
        connect(action, &QAction::triggered, this, chosen);
        return action;
    };
    add("reveal"_L1, tr("Reveal in &File Manager"), &FileMenu::revealChosen);
    add("inspector"_L1, tr("Show &Metadata"), &FileMenu::metadataChosen);
    add("info"_L1, tr("Show &Problems"), &FileMenu::problemsChosen)->setEnabled(hasProblems);
    addSeparator();
    add("copy"_L1, tr("&Copy Name"), &FileMenu::copyNameChosen)->setShortcut(QKeySequence::Copy);
    add("copy"_L1, tr("Copy &New Name"), &FileMenu::copyNewNameChosen);
    addSeparator();
    add("remove"_L1, tr("&Remove from List"), &FileMenu::removeChosen)
        ->setShortcut(QKeySequence::Delete);
}
