// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/batch/GoToMenu.h"

#include "ui/batch/EditorPopovers.h"
#include "ui/table/FilePane.h"
#include "ui/tiles/PaletteBar.h"
#include "ui/tiles/RecipeCard.h"

#include <QMainWindow>

GoToMenu::GoToMenu(const BatchParts &parts, QWidget *parent)
    : QMenu(tr("&Go To"), parent)
    , m_parts(parts)
{
    add(tr("Name &Elements"), Qt::ALT | Qt::Key_1, Elements);
    add(tr("&Recipe"), Qt::ALT | Qt::Key_2, Recipe);
    add(tr("&List of Files"), Qt::ALT | Qt::Key_3, Files);
    addSeparator();
    // Later, since a menu that closes gives the keyboard back to what had it before.
    QAction *next = addAction(tr("&Next Area"));
    next->setShortcut(Qt::Key_F6);
    connect(
        next, &QAction::triggered, this, [this] { step(1); }, Qt::QueuedConnection);
    QAction *previous = addAction(tr("&Previous Area"));
    previous->setShortcut(Qt::SHIFT | Qt::Key_F6);
    connect(
        previous, &QAction::triggered, this, [this] { step(-1); }, Qt::QueuedConnection);
}

void GoToMenu::add(const QString &text, const QKeySequence &key, Area area)
{
    QAction *action = addAction(text);
    action->setShortcut(key);
    connect(
        action, &QAction::triggered, this, [this, area] { go(area); }, Qt::QueuedConnection);
}

GoToMenu::Area GoToMenu::current() const
{
    const QWidget *const now = m_parts.window.focusWidget();
    if (m_parts.palette.isAncestorOf(now))
        return Elements;
    if (m_parts.recipe.isAncestorOf(now))
        return Recipe;
    return m_parts.files.isAncestorOf(now) ? Files : AreaCount;
}

/// From elsewhere it leads to the first or the last.
void GoToMenu::step(int direction)
{
    m_parts.editors.closeAll();
    const Area from = current();
    if (from == AreaCount)
        return go(direction > 0 ? Elements : Files);
    go(static_cast<Area>((from + direction + AreaCount) % AreaCount));
}

void GoToMenu::go(Area area)
{
    m_parts.editors.closeAll();
    m_parts.window.setAttribute(Qt::WA_KeyboardFocusChange); // so that it shows
    switch (area) {
    case Elements:
        return m_parts.palette.takeFocus();
    case Recipe:
        return m_parts.recipe.focusRecipe();
    case Files:
        return m_parts.files.takeFocus();
    case AreaCount:
        break;
    }
}
