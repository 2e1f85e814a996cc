// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TOptions.h"
#include "extensions/TExtensionHandler.h"
#include "platform/TAttributedString.h"
#include "rules/TRuleModel.h"

/// The cleaning of names that analysis and run share, and the assembly of the shown name.
namespace NameGeneration {

/// "" for a null fragment; ":" and then "/" become "_" when compliance is 0.
QString postProcessFragment(const QString &fragment, const TOptions &options);
/// White space and line breaks trimmed at both ends.
QString postProcessFull(const QString &name);

/// The shown name of a file: fragments joined, coloured per rule when colorCode is on. rules may be
/// null (no list at all). Problems go to the file and to log as each rule decides; the dict is
/// copied, and tookTooLong is handed back in it.
TAttributedString applyRuleSet(const TRuleList *rules, TFileObject &file, qsizetype index,
                               TErrorLog *log, TRuleDict &dict, const TOptions &options,
                               bool colorCode);
/// The shown extension with its period, in red; empty when the handler leaves extensions alone.
TAttributedString processExtensionForFile(TExtensionHandler &handler, TFileObject &file,
                                          TErrorLog *batchLog, const TRuleDict &dict);
/// The extension with its period that a file gets, as far as what is shown tells: the one shown, or
/// its own where extensions are left alone; empty when it is taken away or there is none.
QString wantedExtension(const TFileObject &file);
/// What people are to see behind the shown name: the extension with its period that the run gives
/// the file. The shown extension leaves out one that is kept, and says of one that is taken away
/// only that there was one.
struct Extension
{
    QString text; ///< empty for none
    bool isKept = false;
};
Extension extensionForPeople(const TFileObject &file, const TExtensionHandler &handler);
/// prepareToStart to every rule.
void prepareAllRules(const TRuleList &rules);

} // namespace NameGeneration
