// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TRuleKinds.h"

/// A rule of the kind with the settings, as an editor would leave it.
inline TRulePtr makeRule(const QString &kind, const QVariantMap &settings = {})
{
    TRulePtr rule = TRuleKinds::ruleForIdentifier(kind);
    rule->setProperties(settings);
    rule->updatePreview();
    return rule;
}

inline TRulePtr textRule(const QString &text)
{
    return makeRule(QStringLiteral("Text"), {{QStringLiteral("theText"), text}});
}

/// A pattern rule with one pair.
inline TRulePtr patternRule(const QString &match, const QString &replace, qint64 source = 0,
                            qint64 replaceAll = 0)
{
    const QVariantMap pair{{QStringLiteral("match"), match}, {QStringLiteral("replace"), replace}};
    return makeRule(QStringLiteral("RegExTag"), {{QStringLiteral("regArray"), QVariantList{pair}},
                                                 {QStringLiteral("source"), source},
                                                 {QStringLiteral("replaceAll"), replaceAll}});
}

Q_DECLARE_METATYPE(TRuleList)
