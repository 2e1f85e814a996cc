// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

class EditorLabel;
class QProgressBar;

/// The sheet over the batch while a large CSV file is read, so that nothing is done meanwhile with
/// the table from before. Rejected by its Cancel and by Escape, which give the reading up. Belongs
/// to the editor that reads, and goes with it.
class CSVProgress : public QDialog
{
    Q_OBJECT

public:
    explicit CSVProgress(QWidget *editor);

    void setFileName(const QString &name);
    /// From 0 to CSVLoader::kWhole.
    void setValue(int part);

private:
    QProgressBar *m_bar;
    EditorLabel *m_title;
};
