// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDocument.h"

#include <QWidget>

class PillButton;
class QLineEdit;
class QMenu;

/// The files of a batch: filter row and search field, the table with old and new names, and the
/// invitation that stands in its place while the batch is empty. Rows are those of the document's
/// list, whatever the filter hides. Main thread only.
class FilePane : public QWidget
{
    Q_OBJECT

public:
    /// The document outlives the pane.
    explicit FilePane(TDocument &document, QWidget *parent = nullptr);
    ~FilePane() override;

    /// Ascending.
    std::vector<qsizetype> selectedRows() const;
    void selectRows(const std::vector<qsizetype> &rows);
    void selectAllFiles();
    void removeSelected();
    /// To the clipboard: the present names of the selected files, one on a line.
    void copyNames() const;
    /// The file under the keyboard's cursor; null when there is none.
    std::shared_ptr<TFileObject> currentFile() const;
    void focusTable();
    /// Gives the keyboard to the table, or to the invitation in its place.
    void takeFocus();
    const QWidget &table() const;
    QLineEdit *searchField() const;
    /// The buttons that choose which files are shown.
    QList<PillButton *> filters() const;
    /// Something of the window's own beside the search field; the pane owns it.
    void addControl(QWidget *control);
    /// Shows and hides columns; belongs to the pane.
    QMenu *columnsMenu() const;
    /// Opens the list of the row's problems beside it.
    void showProblems(qsizetype row);
    /// Selects the file that the entry of the batch's log is about and goes to it, when one of the
    /// files still has that problem.
    void goToProblem(const TErrorLog &log, qsizetype entry);
    void showOnlyFilesWithProblems();
    /// Opens the desktop's file manager at the current file.
    void revealCurrent();

Q_SIGNALS:
    void selectionChanged();
    void currentFileChanged();
    void addFilesRequested();
    void addFoldersRequested();
    /// "Show Metadata" of the context menu.
    void metadataRequested();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    class Private;
    std::unique_ptr<Private> m_private;
};
