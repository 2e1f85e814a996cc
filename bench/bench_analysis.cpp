// SPDX-License-Identifier: GPL-3.0-or-later
// What the analysis costs for a file and a rule, without any disk: prints the microseconds for one
// of five plain rules, and those that a regular expression over the whole name adds.
#include "document/AnalysisStepper.h"
#include "document/NameGeneration.h"
#include "document/TRuleKinds.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <time.h>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t kRounds = 5;

TRulePtr rule(const QString &kind, const QVariantMap &settings = {})
{
    TRulePtr made = TRuleKinds::ruleForIdentifier(kind);
    made->setProperties(settings);
    made->updatePreview();
    return made;
}

TRuleList plainRules()
{
    return {rule(u"Text"_s, {{u"theText"_s, u"Holiday"_s}}),
            rule(u"Separator"_s, {{u"separatorIndex"_s, 1}}), rule(u"Counter"_s),
            rule(u"Separator"_s, {{u"separatorIndex"_s, 2}}), rule(u"Original"_s)};
}

TRulePtr regexRule()
{
    const QVariantMap pair{{u"match"_s, u"\\s+"_s}, {u"replace"_s, u"_"_s}};
    return rule(u"RegExTag"_s,
                {{u"regArray"_s, QVariantList{pair}}, {u"source"_s, 1}, {u"replaceAll"_s, 1}});
}

std::vector<TFileItem> photos(qsizetype count)
{
    const auto folder = std::make_shared<const TFolder>(u"/home/someone/Pictures"_s);
    std::vector<TFileItem> items;
    items.reserve(static_cast<std::size_t>(count));
    for (qsizetype i = 0; i < count; ++i)
        items.push_back({TFileURL(folder, u"at the lake %1.jpg"_s.arg(i)), {}});
    return items;
}

/// What this thread has used: other programs do not count.
double processorMicroseconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e6 + static_cast<double>(now.tv_nsec) / 1e3;
}

/// Microseconds a file; the median of the rounds.
double analyse(const TRuleList &rules, const std::vector<TFileItem> &items)
{
    std::array<double, kRounds> times{};
    for (double &time : times) {
        TExtensionHandler extensions;
        TErrorLog batchLog;
        const double start = processorMicroseconds();
        NameGeneration::prepareAllRules(rules);
        AnalysisStepper stepper({.rules = &rules,
                                 .extensionHandler = &extensions,
                                 .options = {},
                                 .batchSize = static_cast<qint64>(items.size())});
        for (const TFileItem &item : items)
            stepper.step(item, {}, batchLog);
        time = (processorMicroseconds() - start) / static_cast<double>(items.size());
        if (!batchLog.isEmpty()) {
            std::fputs("bench_analysis: the names should be without problems\n", stderr);
            std::exit(1);
        }
    }
    std::sort(times.begin(), times.end());
    return times[kRounds / 2];
}

} // namespace

int main(int argc, char *argv[])
{
    const long count = argc == 2 ? std::strtol(argv[1], nullptr, 10) : 0;
    if (count <= 0) {
        std::fputs("usage: bench_analysis COUNT\n", stderr);
        return 2;
    }
    const std::vector<TFileItem> items = photos(count);
    TRuleList rules = plainRules();
    const double plain = analyse(rules, items);
    const auto ruleCount = static_cast<double>(rules.size());
    rules.push_back(regexRule());
    const double withRegex = analyse(rules, items);
    std::printf("%.4f %.4f\n", plain / ruleCount, withRegex - plain);
    return 0;
}
