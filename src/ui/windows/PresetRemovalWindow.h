// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TRemovePresetsWindowController.h"

#include <QDialog>

/// The window-modal window in which the user's presets are removed. Deletes itself when closed.
class PresetRemovalWindow : public QDialog
{
    Q_OBJECT

public:
    PresetRemovalWindow(const TRemovePresetsWindowController::Services &services,
                        PresetsManager presets, QWidget *window);

private:
    TRemovePresetsWindowController m_controller;
};
