// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/batch/ViewMenu.h"

#include "settings/UserDefaults.h"
#include "ui/batch/GoToMenu.h"
#include "ui/controls/PillButton.h"
#include "ui/controls/Theme.h"
#include "ui/inspector/InspectorDock.h"
#include "ui/table/FilePane.h"

#include <QActionGroup>
#include <QMainWindow>

#include <array>

namespace {

constexpr QLatin1StringView kAppearance{"appearance"};

struct Appearance
{
    Theme::Scheme scheme;
    const char *name;
};
/// In the order of the numbers under which they are stored.
constexpr std::array kAppearances{
    Appearance{Theme::Scheme::Desktop, QT_TRANSLATE_NOOP("ViewMenu", "As the &Desktop")},
    Appearance{Theme::Scheme::Light, QT_TRANSLATE_NOOP("ViewMenu", "&Light")},
    Appearance{Theme::Scheme::Dark, QT_TRANSLATE_NOOP("ViewMenu", "Dar&k")},
};

} // namespace

void ViewMenu::restoreAppearance()
{
    const qint64 stored = UserDefaults::integerForKey(kAppearance);
    const bool isKnown = stored >= 0 && stored < static_cast<qint64>(kAppearances.size());
    Theme::apply(kAppearances[isKnown ? static_cast<std::size_t>(stored) : 0].scheme);
}

ViewMenu::ViewMenu(const BatchParts &parts, QWidget *parent)
    : QMenu(tr("&View"), parent)
{
    addMenu(parts.files.columnsMenu())->setText(tr("&Columns"));
    addFilters(parts.files);
    addMenu(new GoToMenu(parts, this));
    addSeparator();
    QAction *inspector = parts.inspector.toggleViewAction();
    inspector->setText(tr("Metadata &Inspector"));
    inspector->setShortcut(Qt::CTRL | Qt::Key_I);
    addAction(inspector);
    addSeparator();
    addAppearances();
    addSeparator();
    addFullScreen(parts.window);
}

/// The buttons of the filter row, for the keyboard.
void ViewMenu::addFilters(const FilePane &files)
{
    QMenu *menu = m_filters = addMenu(tr("&Filter"));
    auto *group = new QActionGroup(menu);
    const QList<PillButton *> filters = files.filters();
    for (PillButton *filter : filters) {
        QAction *action = menu->addAction(filter->text(), filter, &PillButton::click);
        action->setCheckable(true);
        group->addAction(action);
        connect(menu, &QMenu::aboutToShow, action,
                [action, filter] { action->setChecked(filter->isChecked()); });
    }
}

void ViewMenu::setFiltersEnabled(bool enabled)
{
    m_filters->setEnabled(enabled);
}

void ViewMenu::addAppearances()
{
    QMenu *menu = addMenu(tr("&Appearance"));
    auto *group = new QActionGroup(menu);
    for (std::size_t i = 0; i < kAppearances.size(); ++i) {
        QAction *action = menu->addAction(tr(kAppearances[i].name));
        action->setCheckable(true);
        action->setData(static_cast<qlonglong>(i));
        group->addAction(action);
        connect(action, &QAction::triggered, this, [i] {
            UserDefaults::setValue(kAppearance, static_cast<qlonglong>(i));
            Theme::apply(kAppearances[i].scheme);
        });
    }
    // Another window may have changed it.
    connect(menu, &QMenu::aboutToShow, menu, [group] {
        const QList<QAction *> actions = group->actions();
        for (QAction *action : actions) {
            const auto place = static_cast<std::size_t>(action->data().toLongLong());
            action->setChecked(kAppearances[place].scheme == Theme::scheme());
        }
    });
}

void ViewMenu::addFullScreen(QMainWindow &window)
{
    QAction *fullScreen = addAction(tr("F&ull Screen"));
    fullScreen->setCheckable(true);
    fullScreen->setShortcut(Qt::Key_F11);
    connect(fullScreen, &QAction::triggered, &window,
            [&window] { window.setWindowState(window.windowState() ^ Qt::WindowFullScreen); });
    connect(this, &QMenu::aboutToShow, fullScreen,
            [fullScreen, &window] { fullScreen->setChecked(window.isFullScreen()); });
}
