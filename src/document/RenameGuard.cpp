// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/RenameGuard.h"

#include <QCoreApplication>

namespace {

constexpr const char *kProcessedTitle = QT_TRANSLATE_NOOP("RenameGuard", "Already Processed");
constexpr const char *kProcessedText = QT_TRANSLATE_NOOP(
    "RenameGuard", "The files have already been processed! Please remove them, or add new files "
                   "(which will automatically remove any file that has been processed");
constexpr const char *kRunningTitle = QT_TRANSLATE_NOOP("RenameGuard", "Already Running");
constexpr const char *kRunningText = QT_TRANSLATE_NOOP(
    "RenameGuard", "Please wait until I have completed the current batch of renames. Patience is a "
                   "virtue, but a coffee helps.");
constexpr const char *kNoRulesTitle = QT_TRANSLATE_NOOP("RenameGuard", "No Rules");
constexpr const char *kNoRulesText = QT_TRANSLATE_NOOP(
    "RenameGuard", "You need to define some 'Rules' that tell me how to build a new file name from "
                   "an existing file. Please do so, and then try again.");
constexpr const char *kNoFilesTitle = QT_TRANSLATE_NOOP("RenameGuard", "Done! ...");
constexpr const char *kNoFilesText = QT_TRANSLATE_NOOP(
    "RenameGuard", "Ok, technically I'm done. Actually I didn't do anything - the list of files "
                   "that you want me to rename is empty. Please add a couple of files by dragging "
                   "them into the sapce that politely asks you to do so.");
constexpr const char *kDangerTitle = QT_TRANSLATE_NOOP("RenameGuard", "Too Dangerous To Start");
constexpr const char *kDangerText = QT_TRANSLATE_NOOP(
    "RenameGuard", "I simulated a full renaming run and encountered %ld critical errors. Renaming "
                   "many files is serious business, and I will not take that risk. Please resolve "
                   "any critical error before trying again.");
constexpr const char *kGrantPrompt = QT_TRANSLATE_NOOP("RenameGuard", "Grant access to %@");
constexpr const char *kWarnedTitle =
    QT_TRANSLATE_NOOP("RenameGuard", "Really? This is NOT a Drill!");
constexpr const char *kWarnedText = QT_TRANSLATE_NOOP(
    "RenameGuard", "You are about to live rename %ld files, while a simulated run turned up %ld "
                   "(probably) minor issues. The rename will work, but the results may be "
                   "suboptimal.\n\nDo you want to Rename, or Cancel?");
constexpr const char *kCleanTitle = QT_TRANSLATE_NOOP("RenameGuard", "This is not a Drill!");
constexpr const char *kCleanText =
    QT_TRANSLATE_NOOP("RenameGuard", "You are about to live rename %ld files. Are you sure?");

QString text(const char *source, std::initializer_list<QString> arguments = {})
{
    return formatted(QCoreApplication::translate("RenameGuard", source), arguments);
}

RenameGuard::Answer refused(const char *title, const QString &explanation)
{
    return {RenameGuard::Verdict::Refused, text(title), explanation};
}

} // namespace

RenameGuard::Answer RenameGuard::check() const
{
    if (!analysed || !batchLog)
        return {};
    const qsizetype criticals = batchLog->numberOfErrorsWithType(TErrorTypes::kCritical);
    const qsizetype warnings = batchLog->numberOfErrorsWithType(TErrorTypes::kWarning);
    if (criticals > 0 && !skipErrorList)
        return {Verdict::ShowErrors, QString(), QString()};
    if (hasProcessedFiles)
        return refused(kProcessedTitle, text(kProcessedText));
    if (running)
        return refused(kRunningTitle, text(kRunningText));
    if (rules == 0)
        return refused(kNoRulesTitle, text(kNoRulesText));
    if (files == 0)
        return refused(kNoFilesTitle, text(kNoFilesText));
    if (criticals > 0)
        return refused(kDangerTitle, text(kDangerText, {QString::number(criticals)}));
    if (inaccessibleFolder)
        return {Verdict::AskForFolder, QString(), text(kGrantPrompt, {*inaccessibleFolder})};
    const QString count = QString::number(files);
    if (warnings > 0)
        return {Verdict::Confirm, text(kWarnedTitle),
                text(kWarnedText, {count, QString::number(warnings)})};
    return {Verdict::Confirm, text(kCleanTitle), text(kCleanText, {count})};
}
