// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/AnalysisStepper.h"

#include <memory>
#include <vector>

using TFileList = std::vector<std::shared_ptr<TFileObject>>;

/// The forms of the analysis that evaluate the document's own rules, prepared, over live entries;
/// for the background form see TDocumentAnalysis.
struct AnalysisRun
{
    TRuleList *rules = nullptr; ///< the document's own list
    TExtensionHandler *extensionHandler = nullptr;
    TOptions options;
    bool colorCode = true;
    bool duplicatesAreCritical = false;

    /// errorLog, the document's own batch log, starts anew.
    void fullRun(const TFileList &files, TErrorLog &errorLog) const;
    /// The same for a caller that goes from file to file; rules and log must live as long.
    std::unique_ptr<AnalysisStepper> fullRunStepper(qsizetype files, TErrorLog &errorLog) const;
    /// Recomputes only the shown name and extension of the given files. Problems of the names are
    /// added to errorLog, which may be null.
    void partialRunFor(const TFileList &files, TErrorLog *errorLog) const;
};
