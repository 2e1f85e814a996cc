// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/batch/BatchParts.h"

class QMimeData;

/// What menus and keys do with the rules of a batch; each is one undoable step. Main thread only.
class RuleCommands
{
public:
    explicit RuleCommands(const BatchParts &parts);

    /// A new rule of the kind behind the selected ones, else at the end; opens its editor.
    void add(const QString &identifier) const;
    /// A rule at the end, as it is.
    void append(const TRulePtr &rule) const;
    bool hasSelection() const;
    /// Exactly one rule is selected.
    bool canEdit() const;
    void edit() const;
    /// By one place; -1 is to the front of the name, 1 to its end.
    bool canMove(int direction) const;
    void move(int direction) const;
    void remove() const;
    void copy() const;
    void cut() const;
    static bool canPaste(const QMimeData &data);
    void paste(const QMimeData &data) const;

private:
    /// Ascending.
    std::vector<qsizetype> selectedPlaces() const;
    qsizetype placeForNew() const;

    const BatchParts m_parts;
};
