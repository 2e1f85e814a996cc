// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QTest>

/// How tests find their way through a window, as a user does: by what is written on things.
namespace WindowTools {

inline QString plain(QString text)
{
    return text.remove(u'&').section(u'\t', 0, 0);
}

/// All commands of a menu or menu bar, at any depth.
inline QList<QAction *> commands(const QWidget &menu)
{
    QList<QAction *> found;
    const QList<QAction *> actions = menu.actions();
    for (QAction *action : actions) {
        if (!action->isSeparator())
            found += action;
        if (action->menu() != nullptr)
            found += commands(*action->menu());
    }
    return found;
}

/// The command of the menu bar with that text; null when there is none.
inline QAction *command(const QMainWindow &window, const QString &text)
{
    const QList<QAction *> all = commands(*window.menuBar());
    for (QAction *action : all) {
        if (plain(action->text()) == text)
            return action;
    }
    return nullptr;
}

inline QAbstractButton *button(const QWidget &window, const QString &text)
{
    for (auto *button : window.findChildren<QAbstractButton *>()) {
        if (plain(button->text()) == text && button->isVisible())
            return button;
    }
    return nullptr;
}

/// The visible window of that class; null when there is none.
template <typename Window>
Window *shown()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        auto *window = qobject_cast<Window *>(widget);
        if (window != nullptr && window->isVisible())
            return window;
    }
    return nullptr;
}

/// Waits for a window of that class and presses one of its buttons.
template <typename Window>
bool answer(const QString &text)
{
    if (!QTest::qWaitFor([] { return shown<Window>() != nullptr; }, 20'000))
        return false;
    QAbstractButton *const chosen = button(*shown<Window>(), text);
    if (chosen == nullptr || !QTest::qWaitFor([chosen] { return chosen->isEnabled(); }, 20'000))
        return false;
    QTest::mouseClick(chosen, Qt::LeftButton);
    return true;
}

} // namespace WindowTools
