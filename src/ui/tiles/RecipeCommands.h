// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDocument.h"
#include "ui/tiles/RecipeSelection.h"

#include <functional>

/// What keys and menus do with the rules of a recipe, above all with the selected ones. All through
/// the document, so that every command is one undoable step. Owned by the recipe; main thread only.
class RecipeCommands
{
public:
    enum class Way { Earlier, Later };
    using TileOf = std::function<QWidget *(const TRulePtr &rule)>;

    /// All outlive the commands.
    RecipeCommands(TDocument &document, Notifications &notifications,
                   const RecipeSelection &selection, TileOf tileOf);

    /// Called before the list of rules changes: an edit that ends then is a step before the change.
    void setBeforeChange(std::function<void()> beforeChange);

    /// A new rule of the kind behind the selected ones, else at the end; asks for its editor.
    void add(const QString &identifier);
    /// A rule at the end, as it is.
    void append(const TRulePtr &rule);
    TRuleList selected() const { return m_selection.selected(); }
    bool hasSelection() const { return !m_selection.isEmpty(); }
    /// Exactly one rule is selected.
    bool canEdit() const;
    void editSelected();
    /// Asks for the rule's editor.
    void edit(const TRulePtr &rule);
    /// Asks for a drag of its copy.
    void startCopy(const TRulePtr &rule);
    void deleteSelected();
    void duplicate();
    void copy() const;
    void cut();
    static bool canPaste();
    /// Behind the selected rules, else at the end.
    void paste();
    bool canMove(Way way) const;
    /// Past one rule that is not selected.
    void move(Way way);

private:
    void post(QLatin1StringView name, const TRulePtr &rule);
    qsizetype placeForMore() const;
    void addRules(const TRuleList &rules, qsizetype place);

    TDocument &m_document;
    Notifications &m_notifications;
    const RecipeSelection &m_selection;
    const TileOf m_tileOf;
    std::function<void()> m_beforeChange = [] {};
};
