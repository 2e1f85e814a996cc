// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QUndoStack>
#include <QWidget>

/// Base of editors whose changes count at once: while one is shown, an edit of the document is
/// open, so that closing it is one undoable step. Undoing while it is open makes what was changed
/// so far a step first.
class LiveEditor : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

protected:
    virtual void openEdit() = 0;
    virtual void closeEdit() = 0;
    virtual QUndoStack &undoStack() = 0;
    /// Destructors of derived classes call it.
    void endEdit();

    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void beginEdit();

    bool m_isEditing = false;
};
