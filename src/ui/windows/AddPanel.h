// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/BackgroundWork.h"
#include "ui/windows/UnshownNames.h"

#include <QFileDialog>

#include <functional>

class QLabel;
class QPushButton;

/// The desktop's panel for files, or for a folder, that go into a batch. What Qt's own panel cannot
/// show because of its name is offered in a line below the others. Answers once unless it is
/// cancelled, and deletes itself.
class AddPanel : public QFileDialog
{
    Q_OBJECT

public:
    using Kind = UnshownNames::Kind;
    using Chosen = std::function<void(const TFileURLs &urls)>;

    /// mainThread and worker outlive the panel.
    AddPanel(Kind kind, MainThread &mainThread, WorkerQueue &worker, Chosen chosen,
             QWidget *window);

    void done(int result) override;

private:
    void addOffer();
    void lookIn(const QString &folder);
    void showOffer();
    TFileURLs choice() const;

    const Kind m_kind;
    BackgroundWork m_work;
    Chosen m_chosen;
    QLabel *m_offer = nullptr; ///< null in the desktop's own panel
    QPushButton *m_take = nullptr;
    TFileURLs m_unshown; ///< in the folder that the panel shows
    bool m_takesUnshown = false;
};
