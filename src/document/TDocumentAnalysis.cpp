// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TDocumentAnalysis.h"

namespace {

constexpr std::size_t kPortion = 50;

} // namespace

/// A run as its worker sees it. The owner is named only in work that is posted, which is not run
/// once the owner has gone.
struct TDocumentAnalysis::Job
{
    quint64 number = 0;
    TDocumentFacts facts;
    TRuleList rules;
    TRuleList forecastRules;
    std::unique_ptr<TExtensionHandler> extensionHandler;
    TOptions options;
    bool colorCode = true;
    bool duplicatesAreCritical = false;
    FileManager &fileManager;
    TDocumentMailPtr mail;
    TDocumentAnalysis &owner;
};

TDocumentAnalysis::TDocumentAnalysis(FileManager &fileManager, TDocumentMailPtr mail, Output output)
    : m_fileManager(fileManager)
    , m_mail(std::move(mail))
    , m_output(std::move(output))
{
}

void TDocumentAnalysis::start(Input input, bool forecastOnly)
{
    m_worker.cancel();
    m_files = std::move(input.files);
    m_isRunning = !forecastOnly;
    const auto job = std::make_shared<Job>(
        Job{++m_newest, std::move(input.facts), std::move(input.rules),
            std::move(input.forecastRules), std::move(input.extensionHandler), input.options,
            input.colorCode, input.duplicatesAreCritical, m_fileManager, m_mail, *this});
    m_worker.run([job, forecastOnly](const std::stop_token &stop) {
        if (!forecastOnly)
            backgroundRunForLog(std::make_shared<TErrorLog>(), *job, stop);
        if (!stop.stop_requested())
            forecast(*job, stop);
    });
}

void TDocumentAnalysis::cancel()
{
    m_worker.cancel();
    ++m_newest;
    m_files.reset();
    m_isRunning = false;
}

/// Runs work on the main thread if the run is still the newest one there.
template <typename Work>
void TDocumentAnalysis::hand(const Job &job, Work work)
{
    job.mail->post([&owner = job.owner, number = job.number, work] {
        if (number == owner.m_newest)
            work(owner);
    });
}

void TDocumentAnalysis::backgroundRunForLog(const std::shared_ptr<TErrorLog> &log, const Job &job,
                                            const std::stop_token &stop)
{
    const std::size_t total = job.facts->count();
    AnalysisStepper stepper({&job.rules, job.extensionHandler.get(), job.options, job.colorCode,
                             job.duplicatesAreCritical, static_cast<qint64>(total), nullptr});
    for (std::size_t first = 0; first < total; first += kPortion) {
        const auto results = std::make_shared<std::vector<TAnalysisResult>>();
        const std::size_t end = std::min(first + kPortion, total);
        results->reserve(end - first);
        for (std::size_t i = first; i < end; ++i) {
            if (stop.stop_requested()) // one name may take a while
                return;
            results->push_back(stepper.step(job.facts->items()[i], job.facts->metadata(i), *log));
        }
        hand(job, [first, results, end, total](TDocumentAnalysis &owner) {
            owner.m_output.results(static_cast<qsizetype>(first), *results, *owner.m_files);
            if (end % kPortion == 0)
                owner.m_output.progress(static_cast<qsizetype>(end), static_cast<qsizetype>(total));
        });
    }
    hand(job, [log](TDocumentAnalysis &owner) {
        owner.m_isRunning = false;
        owner.m_output.complete(*log);
    });
}

void TDocumentAnalysis::forecast(const Job &job, const std::stop_token &stop)
{
    const std::size_t total = job.facts->count();
    ForecastStepper stepper(job.fileManager, {&job.forecastRules, job.extensionHandler.get(),
                                              job.options, static_cast<qint64>(total)});
    for (const TFileItem &item : job.facts->items())
        stepper.announce(item);
    for (std::size_t first = 0; first < total; first += kPortion) {
        const auto forecasts = std::make_shared<std::vector<ForecastStepper::Forecast>>();
        const std::size_t end = std::min(first + kPortion, total);
        forecasts->reserve(end - first);
        for (std::size_t i = first; i < end; ++i) {
            if (stop.stop_requested())
                return;
            forecasts->push_back(stepper.step(job.facts->items()[i], job.facts->metadata(i)));
        }
        hand(job, [first, forecasts](TDocumentAnalysis &owner) {
            owner.m_output.forecasts(static_cast<qsizetype>(first), *forecasts, *owner.m_files);
        });
    }
    hand(job, [](TDocumentAnalysis &owner) { owner.m_output.forecastComplete(); });
}
