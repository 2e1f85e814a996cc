// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDocument.h"

#include <QWidget>

/// What stands in the table's place while a batch is empty: an invitation to drop files, which
/// takes them, and buttons for those who would rather choose.
class EmptyInvitation : public QWidget
{
    Q_OBJECT

public:
    /// The document outlives the invitation.
    explicit EmptyInvitation(TDocument &document, QWidget *parent = nullptr);

    /// Gives the keyboard to the first of the buttons.
    void takeFocus();
    /// Without the drawing, which gives way where there is no room for it.
    QSize minimumSizeHint() const override;
    QSize sizeHint() const override { return minimumSizeHint(); }

Q_SIGNALS:
    void addFilesRequested();
    void addFoldersRequested();

protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void setHighlighted(bool highlighted);

    TDocument &m_document;
    QWidget *m_drawing;         ///< keeps the place of the drawing in the layout
    QWidget *m_files = nullptr; ///< the first button
    bool m_isHighlighted = false;
};
