// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/AnalysisRun.h"

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
    return std::make_unique<AnalysisStepper>(AnalysisStepper::Settings{
        rules, extensionHandler, options, colorCode, duplicatesAreCritical, files, &errorLog});
}

void AnalysisRun::partialRunFor(const TFileList &files, TErrorLog *errorLog) const
{
    if (rules)
        NameGeneration::prepareAllRules(*rules);
    TRuleDict dict;
    dict.batchSize = static_cast<qint64>(files.size());
    qsizetype index = 0;
    for (const auto &file : files) {
        file->clearErrLog();
        file->setAttributedTargetName(NameGeneration::applyRuleSet(rules, *file, index++, errorLog,
                                                                   dict, options, colorCode));
        file->setAttributedTargetExtension(
            NameGeneration::processExtensionForFile(*extensionHandler, *file, nullptr, dict));
    }
}
