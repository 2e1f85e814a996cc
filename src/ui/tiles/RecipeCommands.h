// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDocument.h"
#include "ui/tiles/RecipeSelection.h"

/// What keys and menus do with the selected rules of a recipe. All through the document, so that
/// every command is one undoable step. Owned by the recipe.
class RecipeCommands
{
public:
    enum class Way { Earlier, Later };

    /// All outlive the commands.
    RecipeCommands(TDocument &document, Notifications &notifications,
                   const RecipeSelection &selection);

    /// Asks for the rule's editor; view is its tile.
    void edit(const TRulePtr &rule, QWidget *view);
    /// Asks for a drag of its copy.
    void startCopy(const TRulePtr &rule, QWidget *view);
    void deleteSelected();
    void duplicate();
    void copy() const;
    void cut();
    static bool canPaste();
    /// Behind the selected rules, else at the end.
    void paste();
    /// Past one rule that is not selected.
    void move(Way way);

private:
    void post(QLatin1StringView name, const TRulePtr &rule, QWidget *view);
    qsizetype placeForMore() const;

    TDocument &m_document;
    Notifications &m_notifications;
    const RecipeSelection &m_selection;
};
