// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "rules/TRuleModel.h"

#include <set>
#include <vector>

/// Which rules of a recipe are selected, which one the keyboard is at, and from where a range
/// extends. By rule, not by place, so that moved rules stay selected.
class RecipeSelection
{
public:
    /// Takes over another list. What has gone is no longer selected; the keyboard then is at what
    /// took its place. New rules are selected instead when they came to others.
    void setRules(const TRuleList &rules);
    const TRuleList &rules() const { return m_rules; }
    qsizetype count() const { return static_cast<qsizetype>(m_rules.size()); }

    bool isSelected(const TRulePtr &rule) const { return m_selected.contains(rule); }
    bool isEmpty() const { return m_selected.empty(); }
    TRuleList selected() const;
    /// Ascending.
    std::vector<qsizetype> places() const;
    /// Where the keyboard is; -1 without rules.
    qsizetype current() const { return m_current; }

    void selectOnly(qsizetype place);
    /// From where the last single selection was.
    void extendTo(qsizetype place);
    void toggle(qsizetype place);
    void selectAll();
    void clear() { m_selected.clear(); }

private:
    const TRulePtr &at(qsizetype place) const { return m_rules[static_cast<std::size_t>(place)]; }
    qsizetype clamped(qsizetype place) const;

    TRuleList m_rules;
    std::set<TRulePtr> m_selected;
    qsizetype m_current = -1;
    qsizetype m_anchor = -1;
};
