// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/AnalysisRun.h"
#include "document/ForecastStepper.h"
#include "document/TDocumentFactList.h"
#include "document/TDocumentMail.h"
#include "platform/WorkerQueue.h"

#include <functional>
#include <memory>
#include <vector>

/// The background analysis runs of one document: one worker, which evaluates copies and hands
/// results over in portions of 50 files. A run that a newer one supersedes stops and publishes
/// nothing. After the analysis the same worker says what the run would really write.
///
/// Main thread only. Workers never see entries: results find theirs by place in the list that the
/// run was started with.
class TDocumentAnalysis
{
public:
    /// Everything a run needs, as copies of its own.
    struct Input
    {
        TDocumentFacts facts;
        TDocumentFiles files;
        TRuleList rules;         ///< copied, not prepared
        TRuleList forecastRules; ///< copied and prepared
        std::unique_ptr<TExtensionHandler> extensionHandler;
        TOptions options;
        bool colorCode = true;
        bool duplicatesAreCritical = false;
    };
    /// What becomes of the results; on the main thread.
    struct Output
    {
        std::function<void(qsizetype first, std::vector<TAnalysisResult> &results,
                           const TFileList &files)>
            results;
        /// After every 50th file.
        std::function<void(qsizetype currVal, qsizetype maxVal)> progress;
        std::function<void(TErrorLog &log)> complete;
        std::function<void(qsizetype first, std::vector<ForecastStepper::Forecast> &forecasts,
                           const TFileList &files)>
            forecasts;
        std::function<void()> forecastComplete;
    };

    TDocumentAnalysis(FileManager &fileManager, TDocumentMailPtr mail, Output output);

    void start(Input input) { start(std::move(input), false); }
    /// The second half alone, after names were worked out elsewhere.
    void startForecast(Input input) { start(std::move(input), true); }
    /// Stops what is under way; it publishes nothing.
    void cancel();
    /// True until the errors of the newest run have been published.
    bool isRunning() const { return m_isRunning; }

private:
    struct Job;

    void start(Input input, bool forecastOnly);
    static void backgroundRunForLog(const std::shared_ptr<TErrorLog> &log, const Job &job,
                                    const std::stop_token &stop);
    static void forecast(const Job &job, const std::stop_token &stop);
    template <typename Work>
    static void hand(const Job &job, Work work);

    FileManager &m_fileManager;
    TDocumentMailPtr m_mail;
    Output m_output;
    quint64 m_newest = 0;   ///< number of the newest run
    TDocumentFiles m_files; ///< of the newest run
    bool m_isRunning = false;
    WorkerQueue m_worker; ///< last, so that it ends before what it uses
};
