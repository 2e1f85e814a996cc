// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tiles/RecipeSelection.h"

#include <algorithm>

namespace {

qsizetype placeOf(const TRulePtr &rule, const TRuleList &rules)
{
    const auto found = std::find(rules.begin(), rules.end(), rule);
    return found == rules.end() ? -1 : found - rules.begin();
}

} // namespace

qsizetype RecipeSelection::clamped(qsizetype place) const
{
    return std::clamp<qsizetype>(place, count() == 0 ? -1 : 0, count() - 1);
}

void RecipeSelection::setRules(const TRuleList &rules)
{
    const std::set<TRulePtr> before(m_rules.begin(), m_rules.end());
    const std::set<TRulePtr> after(rules.begin(), rules.end());
    std::set<TRulePtr> added;
    std::set_difference(after.begin(), after.end(), before.begin(), before.end(),
                        std::inserter(added, added.end()));
    const TRulePtr currentRule = m_current < 0 ? nullptr : at(m_current);
    m_rules = rules;

    const bool cameToOthers = added.size() < after.size() || added.size() == 1;
    if (!added.empty() && cameToOthers)
        m_selected = added;
    else
        std::erase_if(m_selected, [&](const TRulePtr &rule) { return !after.contains(rule); });

    if (const qsizetype stayed = placeOf(currentRule, rules); stayed >= 0)
        m_current = stayed;
    m_current = clamped(m_current);
    if (!added.empty() && cameToOthers) {
        const auto first = std::find_if(rules.begin(), rules.end(),
                                        [&](const TRulePtr &rule) { return added.contains(rule); });
        m_current = first - rules.begin();
    }
    m_anchor = m_current;
}

TRuleList RecipeSelection::selected() const
{
    TRuleList selected;
    std::copy_if(m_rules.begin(), m_rules.end(), std::back_inserter(selected),
                 [this](const TRulePtr &rule) { return isSelected(rule); });
    return selected;
}

std::vector<qsizetype> RecipeSelection::places() const
{
    std::vector<qsizetype> places;
    for (qsizetype place = 0; place < count(); ++place) {
        if (isSelected(at(place)))
            places.push_back(place);
    }
    return places;
}

void RecipeSelection::selectOnly(qsizetype place)
{
    m_selected.clear();
    m_current = m_anchor = clamped(place);
    if (m_current >= 0)
        m_selected.insert(at(m_current));
}

void RecipeSelection::extendTo(qsizetype place)
{
    if (count() == 0)
        return;
    m_current = clamped(place);
    m_anchor = clamped(m_anchor);
    const auto [first, last] = std::minmax(m_anchor, m_current);
    m_selected = {m_rules.begin() + first, m_rules.begin() + last + 1};
}

void RecipeSelection::toggle(qsizetype place)
{
    if (count() == 0)
        return;
    m_current = m_anchor = clamped(place);
    if (m_selected.erase(at(m_current)) == 0)
        m_selected.insert(at(m_current));
}

void RecipeSelection::selectAll()
{
    m_selected = {m_rules.begin(), m_rules.end()};
    m_current = clamped(std::max<qsizetype>(m_current, 0));
}
