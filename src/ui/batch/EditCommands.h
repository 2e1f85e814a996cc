// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/batch/BatchParts.h"

#include <QObject>

class RecipeCommands;

/// The commands that mean what the keyboard is at: a text field, the tiles of the recipe or the
/// file table. Elsewhere there is nothing to take away: who has moved on to a button does not look
/// at what is selected behind it. While a menu has the keyboard, what had it before counts.
class EditCommands : public QObject
{
    Q_OBJECT

public:
    EditCommands(const BatchParts &parts, QObject *parent);

    bool canCut() const;
    /// Of files, their names.
    bool canCopy() const;
    bool canPaste() const;
    bool canRemove() const;
    /// What removing means at the moment.
    QString removeText() const;
    bool canSelectAll() const;
    void cut();
    void copy();
    void paste();
    void remove();
    void selectAll();

Q_SIGNALS:
    /// What the commands can do may have changed.
    void changed();

private:
    enum class Area { Elsewhere, Popover, Files, Rules };

    void focusChanged(QWidget *now);
    Area areaOf(const QWidget &now) const;
    /// The text field with the keyboard; null when there is none in this window.
    QWidget *textField() const;

    const BatchParts m_parts;
    RecipeCommands &m_rules;
    Area m_area = Area::Elsewhere;
};
