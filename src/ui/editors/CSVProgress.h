// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

class QProgressBar;

/// The sheet over the batch while a large CSV file is read, so that nothing is done meanwhile with
/// the table from before. Rejected by its Cancel and by Escape, which give the reading up. Belongs
/// to the editor that reads, which deletes it when the file is read.
class CSVProgress : public QDialog
{
    Q_OBJECT

public:
    CSVProgress(const QString &fileName, QWidget *editor);

    /// From 0 to CSVLoader::kWhole.
    void setValue(int part);

private:
    QProgressBar *m_bar;
};
