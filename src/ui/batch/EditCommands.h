// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/batch/BatchParts.h"

#include <QObject>

class RecipeCommands;

/// The commands that mean what the keyboard is at: a text field, the recipe or the file table. What
/// had the keyboard last among these counts, so that menus know what they are for.
class EditCommands : public QObject
{
    Q_OBJECT

public:
    EditCommands(const BatchParts &parts, QObject *parent);

    bool canCopy() const;
    bool canPaste() const;
    bool canRemove() const;
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
    enum class Area { Files, Rules };

    void focusChanged(QWidget *now);
    /// The text field with the keyboard; null when there is none in this window.
    QWidget *textField() const;
    /// The keyboard is in a popover or a sheet, to which rules and files are nothing.
    bool isElsewhere() const;

    const BatchParts m_parts;
    RecipeCommands &m_rules;
    Area m_area = Area::Files;
};
