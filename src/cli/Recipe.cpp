// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Recipe.h"

#include "cli/WholeFile.h"
#include "document/NameGeneration.h"
#include "document/TRuleKinds.h"
#include "metadata/TAudioRule.h"
#include "metadata/TCSVAggregator.h"
#include "metadata/TImageTagRule.h"
#include "rules/TOriginalRule.h"
#include "rules/TRegExRule.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

std::vector<TExtensionMap> mapFromPairs(const QVariantList &pairs)
{
    std::vector<TExtensionMap> map;
    for (const QVariant &pair : pairs)
        map.emplace_back().setProperties(pair.toMap());
    return map;
}

QString patternProblem(QLatin1StringView where, const QString &pattern, const QString &replacement)
{
    const QString problem = RegexReplacer(pattern, replacement).problem();
    return problem.isEmpty() ? problem
                             : u"%1, pattern \"%2\", replacement \"%3\": %4 Names get an empty "
                               "text."_s.arg(where, pattern, replacement, problem);
}

} // namespace

TRuleList Recipe::freshRules() const
{
    TRuleList copy = TRuleKinds::copyArrayViaEncode(rules);
    NameGeneration::prepareAllRules(copy);
    return copy;
}

bool Recipe::readsSizeOrDate() const
{
    return std::any_of(rules.begin(), rules.end(), [](const TRulePtr &rule) {
        const auto *original = dynamic_cast<const TOriginalRule *>(rule.get());
        return original != nullptr && original->readsSizeOrDate();
    });
}

MetadataGatherer::Kinds Recipe::metadataKinds() const
{
    MetadataGatherer::Kinds kinds;
    for (const TRulePtr &rule : rules) {
        if (dynamic_cast<const TImageTagRule *>(rule.get()) != nullptr)
            kinds |= MetadataGatherer::ImageProperties;
        if (dynamic_cast<const TAudioRule *>(rule.get()) != nullptr)
            kinds |= MetadataGatherer::Media;
    }
    return kinds;
}

ImageWish Recipe::imageWish() const
{
    ImageWish wish;
    for (const TRulePtr &rule : rules)
        if (const auto *image = dynamic_cast<const TImageTagRule *>(rule.get()))
            wish.tags.push_back({image->metadataCategory(), image->theTag()});
    return wish;
}

QStringList Recipe::patternProblems() const
{
    QStringList problems;
    for (const TRulePtr &rule : rules) {
        const auto *rewrite = dynamic_cast<const TRegExRule *>(rule.get());
        if (rewrite == nullptr || !rewrite->regArray())
            continue;
        for (const auto &pair : *rewrite->regArray())
            problems.append(patternProblem("RegExTag"_L1, pair->match, pair->replace));
    }
    if (extensionHandler->handlingMethod() == TExtensionHandler::kRegEx)
        problems.append(patternProblem("extension"_L1, extensionHandler->regEx(),
                                       extensionHandler->rePattern()));
    problems.removeAll(QString());
    problems.removeDuplicates();
    return problems;
}

TStringTablePtr readTable(const QString &path, QString &problem)
{
    problem = reasonNotToRead(path);
    return problem.isEmpty() ? rowsWithContentsOfCSVFile(path, &problem) : nullptr;
}

TResult<TRulePtr> makeRule(const WrittenRule &written)
{
    QVariantMap settings = written.settings;
    if (!written.csvFile.isNull()) {
        QString problem;
        const TStringTablePtr table = readTable(written.csvFile, problem);
        if (!table)
            return TResult<TRulePtr>::failure(
                u"%1: %2: %3"_s.arg(written.kind->kind, written.csvFile, problem));
        settings.insert(u"theRows"_s, QVariant::fromValue(table));
    }
    TRulePtr rule = TRuleKinds::ruleForIdentifier(written.kind->kind);
    rule->setProperties(settings);
    rule->updatePreview();
    return rule;
}

void applyExtension(TExtensionHandler &handler, const WrittenExtension &written)
{
    for (auto it = written.begin(); it != written.end(); ++it) {
        const QVariant &value = it.value();
        if (it.key() == "handlingMethod"_L1)
            handler.setHandlingMethod(value.toLongLong());
        else if (it.key() == "mapArray"_L1)
            handler.setMapArray(mapFromPairs(value.toList()));
        else if (it.key() == "replacer"_L1)
            handler.setReplacer(value.toString());
        else if (it.key() == "caseHandling"_L1)
            handler.setCaseHandling(value.toLongLong());
        else if (it.key() == "mapRemainderChoice"_L1)
            handler.setMapRemainderChoice(value.toLongLong());
        else if (it.key() == "ignoreCase"_L1)
            handler.setIgnoreCase(value.toLongLong());
        else if (it.key() == "regEx"_L1)
            handler.setRegEx(value.toString());
        else if (it.key() == "regAccess"_L1)
            handler.setRegAccess(value.toLongLong());
        else if (it.key() == "rePattern"_L1)
            handler.setRePattern(value.toString());
    }
}

QVariantMap extensionSettings(const TExtensionHandler &handler)
{
    QVariantList map;
    for (const TExtensionMap &row : handler.mapArray())
        map.append(row.properties());
    return {{u"handlingMethod"_s, handler.handlingMethod()},
            {u"mapArray"_s, map},
            {u"replacer"_s, handler.replacer()},
            {u"caseHandling"_s, handler.caseHandling()},
            {u"mapRemainderChoice"_s, handler.mapRemainderChoice()},
            {u"ignoreCase"_s, handler.ignoreCase()},
            {u"regEx"_s, handler.regEx()},
            {u"regAccess"_s, handler.regAccess()},
            {u"rePattern"_s, handler.rePattern()}};
}
