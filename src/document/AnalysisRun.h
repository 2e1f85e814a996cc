// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/AnalysisStepper.h"

#include <functional>
#include <memory>
#include <vector>

using TFileList = std::vector<std::shared_ptr<TFileObject>>;

/// The three forms of the analysis over live entries. The document forwards to these; the forms
/// differ in which rules they evaluate, which are prepared and what they store.
struct AnalysisRun
{
    TRuleList *rules = nullptr; ///< the document's own list
    TExtensionHandler *extensionHandler = nullptr;
    TOptions options;
    bool colorCode = true;
    bool duplicatesAreCritical = false;

    /// Called with the files done and the number of files, after every 50th file.
    using Progress = std::function<void(qsizetype, qsizetype)>;

    /// Evaluates an archived copy of the rules (which is not prepared, while the document's own
    /// rules are) over a snapshot of the files, and fills runLog. errorLog is the document's own
    /// batch log, where the extension handler reports.
    void backgroundRunForLog(const TFileList &files, TErrorLog &runLog, TErrorLog &errorLog,
                             const Progress &progress) const;
    /// Evaluates the document's own rules, prepared; errorLog starts anew.
    void fullRun(const TFileList &files, TErrorLog &errorLog) const;
    /// The same for a caller that goes from file to file; rules and log must live as long.
    std::unique_ptr<AnalysisStepper> fullRunStepper(qsizetype files, TErrorLog &errorLog) const;
    /// Recomputes only the shown name and extension of the given files.
    void partialRunFor(const TFileList &files) const;
};
