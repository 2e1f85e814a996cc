// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TResult.h"
#include "platform/TreeCoder.h"
#include "rules/TRuleModel.h"

#include <QByteArray>
#include <QIODevice>

/// The registry of rule kinds: from drag identifiers and archive class names to rules, and the deep
/// copy of rule lists by an archive round trip.
namespace TRuleKinds {

/// The palette's identifiers, in its order: Text, Counter, Original, Date, ImageTag, AudioTag,
/// VideoTag, CSVTag, RegExTag, Separator.
QStringList identifiers();
/// A rule as init leaves it; null for an unknown identifier, which is also logged.
TRulePtr ruleForIdentifier(const QString &identifier);
/// The identifier of a rule's kind.
QString identifierForRule(const TRuleModel &rule);
/// A decoded rule; null when the object is no rule.
TRulePtr ruleFromDecoder(const TDecoder &coder);

/// Deep copy by archive round trip in memory.
TRuleList copyArrayViaEncode(const TRuleList &rules);
/// A keyed archive of the list, as presets and drags carry it.
bool archiveRules(const TRuleList &rules, QIODevice &device);
TResult<TRuleList> unarchiveRules(const QByteArray &data);

} // namespace TRuleKinds
