// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/NameGeneration.h"
#include "document/TDocument.h"

TDocumentAnalysis::Output TDocument::analysisOutput()
{
    return {[this](qsizetype first, std::vector<TAnalysisResult> &results, const TFileList &files) {
                applyResults(first, results, files);
            },
            [this](qsizetype currVal, qsizetype maxVal) {
                tell(&TDocumentHost::showProgress, currVal, maxVal);
            },
            [this](TErrorLog &log) {
                tell(&TDocumentHost::hideProgress);
                backgroundRunCompleteForLog(log);
            },
            [this](qsizetype first, std::vector<ForecastStepper::Forecast> &forecasts,
                   const TFileList &files) { applyForecasts(first, forecasts, files); },
            [this] { redisplay(); }};
}

TRuleList TDocument::preparedCopy() const
{
    TRuleList copy = copyArrayViaEncode(m_ruleArray);
    NameGeneration::prepareAllRules(copy);
    return copy;
}

TDocumentAnalysis::Input TDocument::analysisInput()
{
    m_analysisVersion = m_listVersion;
    const TDocumentFacts &known = m_facts.facts();
    return {known,
            m_facts.files(),
            copyArrayViaEncode(m_ruleArray),
            preparedCopy(),
            m_theExtensionHandler->copyForRun(),
            m_theOptions,
            m_colorCode,
            m_duplicatesAreCritical};
}

AnalysisRun TDocument::analysisRun()
{
    return {&m_ruleArray, m_theExtensionHandler.get(), m_theOptions, m_colorCode,
            m_duplicatesAreCritical};
}

void TDocument::AOpComplete(TAnalyseOperation &)
{
    m_facts.metadataChanged();
    batchChanged();
    ++m_testRunVersion; // one that is under way goes on, since the last file brings a new one
    if (--m_remainingAOps == 0)
        gatheringComplete();
}

void TDocument::doBackgroundRun()
{
    if (m_isClosing)
        return;
    if (m_testRun)
        return batchChanged(); // so that it begins anew
    tell(&TDocumentHost::showProgress, qint64{0}, static_cast<qint64>(m_sourceObjectArray.size()));
    startWhenCollected(false);
}

/// The worker gets facts; those of a long list are collected in portions first.
void TDocument::startWhenCollected(bool forecastOnly)
{
    m_isForecastOnly = forecastOnly;
    if (m_facts.areAtHand()) {
        m_facts.stop();
        return startBackgroundRun();
    }
    m_analysis.cancel();
    m_facts.collect([this] { startBackgroundRun(); });
}

void TDocument::startBackgroundRun()
{
    if (m_isForecastOnly)
        return m_analysis.startForecast(analysisInput());
    m_analysedVersion = m_batchVersion;
    // The run evaluates a copy from before the document's own rules are prepared.
    m_analysis.start(analysisInput());
    NameGeneration::prepareAllRules(m_ruleArray);
}

void TDocument::doBackgroundRunIfUpdate()
{
    if (hasProcessedFiles(m_sourceObjectArray))
        redisplay();
    else if (m_liveUpdate)
        doBackgroundRun();
    followNamesAge();
}

/// The files are in another order, which by itself brings no analysis. What the run would write
/// depends on it all the same.
void TDocument::orderChanged()
{
    if (m_liveUpdate && !isWorkingOutNames() && !hasProcessedFiles(m_sourceObjectArray)) {
        m_namesVersion = m_batchVersion;
        startWhenCollected(true);
    }
    followNamesAge();
}

/// Whoever calls it shows the names again.
bool TDocument::updateNamesAge()
{
    const bool areOld = m_namesVersion != m_batchVersion && m_errorLog && !isWorkingOutNames() &&
                        !m_sourceObjectArray.empty() && !hasProcessedFiles(m_sourceObjectArray);
    return std::exchange(m_areNamesOld, areOld) != areOld;
}

void TDocument::followNamesAge()
{
    if (updateNamesAge())
        redisplay();
}

void TDocument::backgroundRunCompleteForLog(TErrorLog &log)
{
    m_errorLog = std::move(log);
    m_namesVersion = m_analysedVersion;
    if (m_liveUpdate && m_namesVersion != m_batchVersion)
        orderChanged(); // meanwhile; any other change would have begun anew
    updateNamesAge();
    redisplay();
    tell(&TDocumentHost::setRenameBadge,
         static_cast<qint64>(numberOfErrorsWithType(TErrorTypes::kCritical, *m_errorLog)));
    Q_EMIT errorLogChanged();
    if (std::exchange(m_renameWanted, false))
        runRename();
}

void TDocument::applyResults(qsizetype first, std::vector<TAnalysisResult> &results,
                             const TFileList &files)
{
    auto file = files.begin() + first;
    for (TAnalysisResult &result : results) {
        TFileObject &entry = **file++;
        entry.setErrLog(std::move(result.errors));
        // A forecast about another name would pass for one about this name until the next comes.
        if (!m_forecasts.isEmpty() &&
            (entry.attributedTargetName().string() != result.targetName.string() ||
             entry.attributedTargetExtension() != result.targetExtension))
            m_forecasts.remove(entry);
        entry.setTarget(std::move(result.targetName));
        entry.setAttributedTargetExtension(result.targetExtension);
    }
    if (m_analysisVersion == m_listVersion)
        Q_EMIT filesChanged(first, first + static_cast<qsizetype>(results.size()) - 1);
}

void TDocument::applyForecasts(qsizetype first, std::vector<ForecastStepper::Forecast> &forecasts,
                               const TFileList &files)
{
    if (first == 0)
        m_forecasts.clear();
    auto file = files.begin() + first;
    for (const ForecastStepper::Forecast &forecast : forecasts)
        m_forecasts.insert(**file++, forecast);
    if (m_analysisVersion == m_listVersion)
        Q_EMIT filesChanged(first, first + static_cast<qsizetype>(forecasts.size()) - 1);
}

void TDocument::cancelAnalysis()
{
    m_analysis.cancel();
    endTestRun();
    m_facts.stop();
    m_facts.forgetCollected();
    m_renameWanted = false;
    tell(&TDocumentHost::hideProgress);
}
