// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/BatchReport.h"
#include "cli/Console.h"
#include "cli/JsonWriter.h"

/// The batch as one JSON document, or as one object a line.
class JsonBatchReport : public BatchReport
{
public:
    explicit JsonBatchReport(Console &console);

    void batchProblems(const TErrorLog &problems, const TErrorLog &file) override;
    void previewed(const TFileItem &item, const TAnalysisResult &analysis,
                   const ForecastStepper::Forecast &forecast) override;
    void finish(const PreviewOutcome &outcome) override;
    bool wantsTargets() const override { return true; }
    void renamed(const TFileItem &item, const TAnalysisResult &analysis,
                 const TRenameReport &report) override;
    void finish(const RenameOutcome &outcome) override;

private:
    void beginFile(const TFileItem &item, const TAnalysisResult &analysis, const QString &finalName,
                   const TErrorLog &errors);
    void endFile();
    void beginRest();
    void endRest();
    void writeOut();

    Console &m_console;
    JsonWriter m_json;
    JsonWriter m_problems; ///< elements of the batch's "errors"
};

/// An array of {"level","text"}.
void writeProblems(JsonWriter &json, const TErrorLog &problems);
