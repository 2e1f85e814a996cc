// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TRuleKinds.h"

#include "document/TErrorLog.h"
#include "metadata/TAudioRule.h"
#include "metadata/TCSVRule.h"
#include "metadata/TImageTagRule.h"
#include "metadata/TVideoRule.h"
#include "platform/KeyedArchiver.h"
#include "platform/KeyedUnarchiver.h"
#include "rules/TCountRule.h"
#include "rules/TDateRule.h"
#include "rules/TOriginalRule.h"
#include "rules/TRegExRule.h"
#include "rules/TSeparatorRule.h"
#include "rules/TTextRule.h"
#include "settings/logging.h"

#include <algorithm>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

constexpr QStringView kLogName = u"rules";
constexpr QStringView kUnknownIdentifier = u"Unknown draggable identifier '%@' encountered";
constexpr QStringView kNoList = u"The archive does not hold a list of rules.";
constexpr QStringView kNoRule =
    u"The archive holds an object of the class \"%@\", which is no rule.";
constexpr QStringView kNoObject = u"The archive holds a value that is no rule.";

struct Kind
{
    QLatin1StringView identifier;
    QLatin1StringView className;
    TRulePtr (*create)();
    TRulePtr (*decoding)();
};

template <class Rule>
constexpr Kind kind(QLatin1StringView identifier, QLatin1StringView className)
{
    return {identifier, className, []() -> TRulePtr { return std::make_shared<Rule>(); },
            []() -> TRulePtr { return Rule::decoding(); }};
}

constexpr Kind kKinds[] = {
    kind<TTextRule>("Text"_L1, "TTextRule"_L1),
    kind<TCountRule>("Counter"_L1, "TCountRule"_L1),
    kind<TOriginalRule>("Original"_L1, "TOriginalRule"_L1),
    kind<TDateRule>("Date"_L1, "TDateRule"_L1),
    kind<TImageTagRule>("ImageTag"_L1, "TImageTagRule"_L1),
    kind<TAudioRule>("AudioTag"_L1, "TAudioRule"_L1),
    kind<TVideoRule>("VideoTag"_L1, "TVideoRule"_L1),
    kind<TCSVRule>("CSVTag"_L1, "TCSVRule"_L1),
    kind<TRegExRule>("RegExTag"_L1, "TRegExRule"_L1),
    kind<TSeparatorRule>("Separator"_L1, "TSeparatorRule"_L1),
};

/// The kind whose column holds the text; null when there is none.
const Kind *findKind(QLatin1StringView Kind::*column, QStringView text)
{
    const auto found = std::ranges::find_if(
        kKinds, [text](QLatin1StringView value) { return value == text; }, column);
    return found == std::ranges::end(kKinds) ? nullptr : found;
}

/// Appends every rule to an archive of either sort.
void appendRules(const TRuleList &rules, auto &archive)
{
    for (const TRulePtr &rule : rules) {
        archive.appendObject(rule->archiveClass(),
                             [&rule](TEncoder &coder) { rule->encodeWithCoder(coder); });
    }
}

/// Settings that no rule can have, such as a separator beyond the table, are a problem too.
TResult<TRulePtr> ruleOrProblem(const TDecoder &coder)
{
    try {
        if (TRulePtr rule = TRuleKinds::ruleFromDecoder(coder))
            return rule;
    } catch (const std::out_of_range &error) {
        return TResult<TRulePtr>::failure(QString::fromUtf8(error.what()));
    }
    return TResult<TRulePtr>::failure(formatted(kNoRule, {coder.className()}));
}

} // namespace

QStringList TRuleKinds::identifiers()
{
    QStringList identifiers;
    for (const Kind &kind : kKinds)
        identifiers.append(kind.identifier);
    return identifiers;
}

TRulePtr TRuleKinds::ruleForIdentifier(const QString &identifier)
{
    const Kind *const kind = findKind(&Kind::identifier, identifier);
    if (kind == nullptr) {
        zelWarn(kLogName.toString(), formatted(kUnknownIdentifier, {identifier}));
        return nullptr;
    }
    return kind->create();
}

QString TRuleKinds::identifierForRule(const TRuleModel &rule)
{
    const Kind *const kind =
        findKind(&Kind::className, QString::fromLatin1(rule.archiveClass().front()));
    return kind == nullptr ? QString() : QString(kind->identifier);
}

TRulePtr TRuleKinds::ruleFromDecoder(const TDecoder &coder)
{
    const Kind *const kind = findKind(&Kind::className, coder.className());
    if (kind == nullptr)
        return nullptr;
    TRulePtr rule = kind->decoding();
    rule->initWithCoder(coder);
    return rule;
}

TRuleList TRuleKinds::copyArrayViaEncode(const TRuleList &rules)
{
    TreeArchive archive;
    appendRules(rules, archive);
    TRuleList copies;
    copies.reserve(rules.size());
    archive.forEachObject(
        [&copies](const TDecoder &coder) { copies.push_back(ruleFromDecoder(coder)); });
    return copies;
}

bool TRuleKinds::archiveRules(const TRuleList &rules, QIODevice &device)
{
    KeyedArchiver archiver(device);
    appendRules(rules, archiver);
    return archiver.finish();
}

TResult<TRuleList> TRuleKinds::unarchiveRules(const QByteArray &data)
{
    const TResult<KeyedUnarchiver> opened = KeyedUnarchiver::fromData(data);
    if (!opened)
        return TResult<TRuleList>::failure(opened.message());
    const KeyedUnarchiver &archive = opened.value();
    if (archive.count() < 0)
        return TResult<TRuleList>::failure(kNoList.toString());

    TRuleList rules;
    QString problem;
    qsizetype objects = 0;
    archive.forEachObject([&](const TDecoder &coder) {
        ++objects;
        TResult<TRulePtr> rule = ruleOrProblem(coder);
        if (rule)
            rules.push_back(std::move(rule).value());
        else if (problem.isEmpty())
            problem = rule.message();
    });
    if (problem.isEmpty() && objects < archive.count())
        problem = kNoObject.toString();
    if (!problem.isEmpty())
        return TResult<TRuleList>::failure(problem);
    return rules;
}
