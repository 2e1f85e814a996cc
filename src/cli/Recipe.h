// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/RuleWords.h"
#include "document/TOptions.h"
#include "extensions/TExtensionHandler.h"
#include "metadata/MetadataGatherer.h"
#include "rules/TRuleModel.h"

#include <memory>

/// What the new names are made from, ready for use but never evaluated itself: every analysis and
/// every run takes copies.
struct Recipe
{
    TRuleList rules;
    std::unique_ptr<TExtensionHandler> extensionHandler = std::make_unique<TExtensionHandler>();
    TOptions options;
    bool duplicatesAreCritical = false;
    bool hasExtensionSettings = false; ///< the user gave some
    bool hasOptions = false;           ///< the user gave some

    /// A copy of the rules for one pass over the batch, prepared.
    TRuleList freshRules() const;
    /// Whether a rule takes a file's size or one of its dates.
    bool readsSizeOrDate() const;
    /// What metadata the rules take from the files.
    MetadataGatherer::Kinds metadataKinds() const;
    /// Which image properties they take.
    ImageWish imageWish() const;
    /// What is wrong with its regular expressions, each once: names get an empty text from them.
    QStringList patternProblems() const;
};

/// The CSV file that a user named; null with the problem, which does not name the file.
TStringTablePtr readTable(const QString &path, QString &problem);
/// A rule as its kind and the settings say; reads the rule's CSV file, if it has one.
TResult<TRulePtr> makeRule(const WrittenRule &written);
void applyExtension(TExtensionHandler &handler, const WrittenExtension &written);
/// The handler's nine settings under their names; mapArray as a list of two-text maps.
QVariantMap extensionSettings(const TExtensionHandler &handler);
