// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/RuleSampler.h"

#include "document/NameGeneration.h"
#include "document/TRuleKinds.h"
#include "rules/TCountRule.h"

#include <algorithm>

namespace {

/// Brings the counters to the number that the file in this row gets.
void advanceCounters(const TRuleList &rules, qsizetype row)
{
    for (const TRulePtr &rule : rules)
        if (auto *counter = dynamic_cast<TCountRule *>(rule.get()))
            counter->setGlobalCounter(static_cast<qint64>(
                static_cast<quint64>(row) * static_cast<quint64>(counter->increment())));
}

TRuleDict dictFor(const TDocument &document)
{
    TRuleDict dict;
    dict.batchSize = static_cast<qint64>(document.sourceObjectArray().size());
    return dict;
}

} // namespace

TRulePtr RuleSampler::preparedCopy(const TRulePtr &rule)
{
    const TRuleList copies = TRuleKinds::copyArrayViaEncode({rule});
    if (copies.empty())
        return nullptr;
    copies.front()->prepareToStart();
    return copies.front();
}

qsizetype RuleSampler::rowOf(const TDocument &document, const TFileObject &file)
{
    const TFileList &files = document.sourceObjectArray();
    const auto found = std::find_if(files.begin(), files.end(),
                                    [&file](const auto &each) { return each.get() == &file; });
    return found == files.end() ? 0 : found - files.begin();
}

QString RuleSampler::fragment(const TDocument &document, TRuleModel &rule, const TFileObject &file,
                              const QString &soFar)
{
    const std::shared_ptr<TFileObject> copy = file.copy();
    TRuleDict dict = dictFor(document);
    dict.result = soFar;
    return NameGeneration::postProcessFragment(rule.processWithFileObject(*copy, nullptr, dict),
                                               document.theOptions());
}

QString RuleSampler::fragmentOfCopy(const TDocument &document, const TRulePtr &rule,
                                    const TFileObject &file)
{
    const TRulePtr copy = preparedCopy(rule);
    return copy ? fragment(document, *copy, file) : QString();
}

QString RuleSampler::nameBefore(const TDocument &document, const TRulePtr &rule,
                                const TFileObject &file)
{
    const TRuleList &all = document.ruleArray();
    const TRuleList before = TRuleKinds::copyArrayViaEncode(
        TRuleList(all.begin(), std::find(all.begin(), all.end(), rule)));
    NameGeneration::prepareAllRules(before);
    const qsizetype row = rowOf(document, file);
    advanceCounters(before, row);
    TRuleDict dict = dictFor(document);
    return NameGeneration::applyRuleSet(&before, *file.copy(), row, nullptr, dict,
                                        document.theOptions(), false)
        .string();
}
