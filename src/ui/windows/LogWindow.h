// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TLogWindowController.h"

#include <QWidget>

#include <memory>

/// The window with the text log of a run, which can be selected, copied and saved as RTF. A window
/// of its own; deletes itself when closed.
class LogWindow : public QWidget
{
    Q_OBJECT

public:
    explicit LogWindow(std::shared_ptr<TLogWindowController> controller, QWidget *parent = nullptr);
    ~LogWindow() override;

private:
    class Private;
    std::unique_ptr<Private> m_private;
};
