// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/batch/RuleCommands.h"

#include "document/TDocumentDrag.h"
#include "document/TRuleKinds.h"
#include "ui/batch/EditorPopovers.h"
#include "ui/tiles/RecipeCard.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>

#include <algorithm>

RuleCommands::RuleCommands(const BatchParts &parts)
    : m_parts(parts)
{
}

std::vector<qsizetype> RuleCommands::selectedPlaces() const
{
    const TRuleList &rules = m_parts.document.ruleArray();
    std::vector<qsizetype> places;
    for (const TRulePtr &rule : m_parts.recipe.selectedRules()) {
        const auto found = std::find(rules.begin(), rules.end(), rule);
        if (found != rules.end())
            places.push_back(found - rules.begin());
    }
    std::sort(places.begin(), places.end());
    return places;
}

qsizetype RuleCommands::placeForNew() const
{
    const std::vector<qsizetype> places = selectedPlaces();
    return places.empty() ? static_cast<qsizetype>(m_parts.document.ruleArray().size())
                          : places.back() + 1;
}

void RuleCommands::add(const QString &identifier) const
{
    const TRulePtr rule = TRuleKinds::ruleForIdentifier(identifier);
    if (!rule)
        return;
    rule->updatePreview();
    m_parts.editors.closeAll(); // an edit that ends now is a step before this one
    m_parts.document.addRules({rule}, placeForNew());
    m_parts.editors.editRule(rule);
    if (auto *field = qobject_cast<QLineEdit *>(QApplication::focusWidget()))
        field->selectAll(); // what a new rule starts with is there to be typed over
}

void RuleCommands::append(const TRulePtr &rule) const
{
    m_parts.editors.closeAll();
    m_parts.document.addRules({rule}, static_cast<qsizetype>(m_parts.document.ruleArray().size()));
}

bool RuleCommands::hasSelection() const
{
    return !m_parts.recipe.selectedRules().empty();
}

bool RuleCommands::canEdit() const
{
    return m_parts.recipe.selectedRules().size() == 1;
}

void RuleCommands::edit() const
{
    if (canEdit())
        m_parts.editors.editRule(m_parts.recipe.selectedRules().front());
}

bool RuleCommands::canMove(int direction) const
{
    const std::vector<qsizetype> places = selectedPlaces();
    if (places.empty())
        return false;
    return direction < 0
               ? places.front() > 0
               : places.back() + 1 < static_cast<qsizetype>(m_parts.document.ruleArray().size());
}

void RuleCommands::move(int direction) const
{
    if (!canMove(direction))
        return;
    const std::vector<qsizetype> places = selectedPlaces();
    m_parts.document.moveRules(places, direction < 0 ? places.front() - 1 : places.back() + 2);
}

void RuleCommands::remove() const
{
    const TRuleList rules = m_parts.recipe.selectedRules();
    if (rules.empty())
        return;
    m_parts.editors.closeAll();
    m_parts.document.deleteRules(rules);
}

void RuleCommands::copy() const
{
    if (hasSelection())
        QApplication::clipboard()->setMimeData(
            TDocumentDrag::dataForRules(m_parts.recipe.selectedRules()).release()); // its own now
}

void RuleCommands::cut() const
{
    copy();
    remove();
}

bool RuleCommands::canPaste(const QMimeData &data)
{
    return data.hasFormat(TDocumentDrag::rulesType());
}

void RuleCommands::paste(const QMimeData &data) const
{
    m_parts.editors.closeAll();
    m_parts.document.addRules(TDocumentDrag::rules(data), placeForNew());
}
