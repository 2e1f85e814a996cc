// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/BatchReport.h"

#include <QMap>

/// The batch as text for people: a line a file with its problems below it; when quiet, only the
/// problems, on standard error.
class TextBatchReport : public BatchReport
{
public:
    explicit TextBatchReport(Console &console);

    void batchProblems(const TErrorLog &problems, const TErrorLog &file) override;
    void previewed(const TFileItem &item, const TAnalysisResult &analysis,
                   const ForecastStepper::Forecast &forecast) override;
    void finish(const PreviewOutcome &outcome) override;
    bool wantsTargets() const override;
    void renamed(const TFileItem &item, const TAnalysisResult &analysis,
                 const TRenameReport &report) override;
    void finish(const RenameOutcome &outcome) override;

private:
    /// With the new name as text, or with colours as bytes.
    template <class Name>
    void line(const TFileItem &item, const Name &newName);
    void problem(const TFileItem &item, QByteArrayView mark, const QString &text);
    void problems(const TFileItem &item, const TErrorLog &log);
    void batchSummary();

    Console &m_console;
    /// Problems that belong to no file, with the number of times they were reported.
    QMap<std::pair<int, QString>, qsizetype> m_batchProblems;
};
