// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/batch/BatchParts.h"

#include <QMenu>

/// The keyboard's short ways between the name elements, the recipe and the list of files: to each
/// by its own key, and from one to the next. An open editor is closed on the way.
class GoToMenu : public QMenu
{
    Q_OBJECT

public:
    GoToMenu(const BatchParts &parts, QWidget *parent);

private:
    enum Area { Elements, Recipe, Files, AreaCount };

    void add(const QString &text, const QKeySequence &key, Area area);
    void go(Area area);
    void step(int direction);
    /// AreaCount: the keyboard is in none of them.
    Area current() const;

    const BatchParts m_parts;
};
