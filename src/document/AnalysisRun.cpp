// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/AnalysisRun.h"

#include "document/TRuleKinds.h"

namespace {

constexpr qsizetype kProgressStep = 50;

AnalysisStepper::Settings stepperSettings(const AnalysisRun &run, const TRuleList *rules,
                                          qsizetype files, TErrorLog *extensionLog)
{
    return {rules, run.extensionHandler, run.options, run.colorCode, run.duplicatesAreCritical,
            files, extensionLog};
}

} // namespace

void AnalysisRun::backgroundRunForLog(const TFileList &files, TErrorLog &runLog,
                                      TErrorLog &errorLog, const Progress &progress) const
{
    const auto total = static_cast<qsizetype>(files.size());
    TRuleList copied;
    if (rules) {
        copied = TRuleKinds::copyArrayViaEncode(*rules);
        NameGeneration::prepareAllRules(*rules);
    }
    AnalysisStepper stepper(stepperSettings(*this, rules ? &copied : nullptr, total, &errorLog));
    for (qsizetype i = 0; i < total; ++i) {
        stepper.step(*files[static_cast<std::size_t>(i)], runLog);
        if (progress && (i + 1) % kProgressStep == 0)
            progress(i + 1, total);
    }
}

void AnalysisRun::fullRun(const TFileList &files, TErrorLog &errorLog) const
{
    const auto stepper = fullRunStepper(static_cast<qsizetype>(files.size()), errorLog);
    for (const auto &file : files)
        stepper->step(*file, errorLog);
}

std::unique_ptr<AnalysisStepper> AnalysisRun::fullRunStepper(qsizetype files,
                                                             TErrorLog &errorLog) const
{
    errorLog.clear();
    if (rules)
        NameGeneration::prepareAllRules(*rules);
    return std::make_unique<AnalysisStepper>(stepperSettings(*this, rules, files, &errorLog));
}

void AnalysisRun::partialRunFor(const TFileList &files) const
{
    if (rules)
        NameGeneration::prepareAllRules(*rules);
    TRuleDict dict;
    dict.batchSize = static_cast<qint64>(files.size());
    qsizetype index = 0;
    for (const auto &file : files) {
        file->clearErrLog();
        file->setAttributedTargetName(
            NameGeneration::applyRuleSet(rules, *file, index++, nullptr, dict, options, colorCode));
        file->setAttributedTargetExtension(
            NameGeneration::processExtensionForFile(*extensionHandler, *file, nullptr, dict));
    }
}
