// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/RuleSampler.h"

#include "document/NameGeneration.h"
#include "document/TRuleKinds.h"
#include "metadata/TCSVRule.h"
#include "rules/TCountRule.h"

#include <algorithm>

namespace {

/// A number that wraps around as counters do.
qint64 wrapped(quint64 number)
{
    return static_cast<qint64>(number);
}

/// Brings a prepared counter to the number that the file in this row gets.
void advance(TCountRule &counter, const TFileList &files, qsizetype row)
{
    const auto step = static_cast<quint64>(counter.increment());
    if (!counter.individualFileTypes()) {
        counter.setGlobalCounter(wrapped(static_cast<quint64>(row) * step));
        return;
    }
    const QString extension = files[static_cast<std::size_t>(row)]->extension();
    const auto earlier = std::count_if(files.begin(), files.begin() + row, [&](const auto &file) {
        return file->extension() == extension;
    });
    const auto first = static_cast<quint64>(counter.startValue());
    counter.setExtensionCounters(
        {{extension, wrapped(first + static_cast<quint64>(earlier) * step)}});
}

/// The same for everything in the list that counts files.
void advanceCounters(const TRuleList &rules, const TFileList &files, qsizetype row)
{
    for (const TRulePtr &rule : rules) {
        if (auto *counter = dynamic_cast<TCountRule *>(rule.get()))
            advance(*counter, files, row);
        else if (auto *table = dynamic_cast<TCSVRule *>(rule.get()))
            table->setGlobalCounter(static_cast<quint64>(row));
    }
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

QStringList RuleSampler::namesBefore(const TDocument &document, const TRulePtr &rule, qsizetype row,
                                     qsizetype count)
{
    const TFileList &files = document.sourceObjectArray();
    const TRuleList &all = document.ruleArray();
    const TRuleList before = TRuleKinds::copyArrayViaEncode(
        TRuleList(all.begin(), std::find(all.begin(), all.end(), rule)));
    NameGeneration::prepareAllRules(before);
    const qsizetype end = std::min(row + count, static_cast<qsizetype>(files.size()));
    if (row < end)
        advanceCounters(before, files, row);
    QStringList names;
    for (; row < end; ++row) {
        TRuleDict dict = dictFor(document);
        names +=
            NameGeneration::applyRuleSet(&before, *files[static_cast<std::size_t>(row)]->copy(),
                                         row, nullptr, dict, document.theOptions(), false)
                .string();
    }
    return names;
}
