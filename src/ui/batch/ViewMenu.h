// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/batch/BatchParts.h"

#include <QMenu>

/// What of a batch window is shown, and how the whole program looks. The appearance is remembered.
class ViewMenu : public QMenu
{
    Q_OBJECT

public:
    ViewMenu(const BatchParts &parts, QWidget *parent);

    /// Gives the application the remembered appearance; before the first window.
    static void restoreAppearance();
    void setFiltersEnabled(bool enabled);

private:
    void addFilters(const FilePane &files);
    void addAppearances();
    void addFullScreen(QMainWindow &window);

    QMenu *m_filters = nullptr;
};
