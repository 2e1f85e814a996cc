// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDialogHost.h"

#include <QFileDialog>

/// The desktop's panel for one folder or for a file to be saved. Answers once, with nothing when it
/// was cancelled, and deletes itself; destroyed earlier, it gives no answer. Names that are no
/// valid UTF-8 come through.
class FilePanel : public QFileDialog
{
    Q_OBJECT

public:
    FilePanel(TDialogHost::Chosen chosen, QWidget *window);

    void askForFolder(const TDialogHost::FolderPanel &panel);
    void askForNewFile(const TDialogHost::SavePanel &panel);
    void done(int result) override;

private:
    std::optional<TFileURL> choice() const;

    TDialogHost::Chosen m_chosen;
    QString m_fileType; ///< of a file to be saved
};
