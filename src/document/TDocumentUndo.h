// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QUndoCommand>

#include <functional>

/// One undoable step of a document: the state from before it, which is exchanged with the current
/// one by every undo and redo. Pushed when the change has been made, so the first redo does
/// nothing.
template <typename State>
class TDocumentUndo : public QUndoCommand
{
public:
    /// Puts the given state in force and leaves the former one in its place.
    using Exchange = std::function<void(State &)>;

    TDocumentUndo(const QString &name, State before, Exchange exchange)
        : QUndoCommand(name)
        , m_state(std::move(before))
        , m_exchange(std::move(exchange))
    {
    }

    void undo() override { m_exchange(m_state); }
    void redo() override
    {
        if (m_isDone)
            m_exchange(m_state);
        m_isDone = true;
    }

private:
    State m_state;
    Exchange m_exchange;
    bool m_isDone = false;
};
