// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/TFileItem.h"
#include "document/AnalysisStepper.h"
#include "document/ForecastStepper.h"
#include "document/TRenameRun.h"

#include <memory>

class Console;

/// How a preview ended.
struct PreviewOutcome
{
    qsizetype files = 0;
    qsizetype warnings = 0;
    qsizetype criticals = 0;
    qsizetype missing = 0;
    bool refused = false;     ///< there are critical problems: a run would not start
    bool interrupted = false; ///< files are missing at the end
};

/// How a run ended.
struct RenameOutcome
{
    TRenameSummary summary;
    qsizetype missing = 0;
    QByteArray textLog; ///< JSON characters; only collected for JSON
};

/// Tells the user about the files of a batch one by one, as they are computed, and about the whole
/// at the end. One for each verb's execution; the console is not owned.
class BatchReport
{
public:
    static std::unique_ptr<BatchReport> make(Console &console);

    BatchReport() = default;
    BatchReport(const BatchReport &) = delete;
    BatchReport &operator=(const BatchReport &) = delete;
    virtual ~BatchReport() = default;

    /// Problems that the analysis reported for the batch; those of file stand there too.
    virtual void batchProblems(const TErrorLog &problems, const TErrorLog &file) = 0;
    virtual void previewed(const TFileItem &item, const TAnalysisResult &analysis,
                           const ForecastStepper::Forecast &forecast) = 0;
    virtual void finish(const PreviewOutcome &outcome) = 0;
    /// True when renamed() needs the analysis' result for each file.
    virtual bool wantsTargets() const = 0;
    virtual void renamed(const TFileItem &item, const TAnalysisResult &analysis,
                         const TRenameReport &report) = 0;
    virtual void finish(const RenameOutcome &outcome) = 0;
};
