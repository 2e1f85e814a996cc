// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/JsonWriter.h"
#include "cli/RuleSettings.h"
#include "rules/TRuleModel.h"

/// Rules written back in the forms that --rule and --recipe read.
namespace RuleForms {

/// The JSON form with the settings that differ from a new rule's.
void writeRule(JsonWriter &json, const TRuleModel &rule);
/// {"rules":[...]}: a whole recipe file.
void writeRules(JsonWriter &json, const TRuleList &rules);
/// The shortest text that --rule takes for the rule: words where they suffice, else JSON.
QString ruleText(const TRuleModel &rule);
/// A setting's value as JSON; null when it is unset.
void writeValue(JsonWriter &json, const SettingInfo &setting, const QVariant &value);

} // namespace RuleForms
