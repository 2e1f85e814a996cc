// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/LiveEditor.h"

#include <QKeyEvent>
#include <QPointer>

#include <utility>

void LiveEditor::beginEdit()
{
    openEdit();
    m_isEditing = true;
}

void LiveEditor::endEdit()
{
    if (std::exchange(m_isEditing, false))
        closeEdit();
}

void LiveEditor::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (!event->spontaneous() && !m_isEditing)
        beginEdit();
}

void LiveEditor::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    if (!event->spontaneous())
        endEdit();
}

bool LiveEditor::event(QEvent *event)
{
    // Undoing is the editor's own business, before any shortcut of the window.
    if (event->type() == QEvent::ShortcutOverride) {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (key->matches(QKeySequence::Undo) || key->matches(QKeySequence::Redo)) {
            event->accept();
            return true;
        }
    }
    return QWidget::event(event);
}

void LiveEditor::keyPressEvent(QKeyEvent *event)
{
    const bool isUndo = event->matches(QKeySequence::Undo);
    if (!isUndo && !event->matches(QKeySequence::Redo))
        return QWidget::keyPressEvent(event);
    endEdit();
    const QPointer<LiveEditor> self(this);
    if (isUndo)
        undoStack().undo();
    else
        undoStack().redo();
    // What is edited may have gone, and the popover with it.
    if (self && isVisible())
        beginEdit();
}
