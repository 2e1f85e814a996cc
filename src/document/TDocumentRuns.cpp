// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/NameGeneration.h"
#include "document/TDocument.h"
#include "document/TDocumentSlice.h"

namespace {

constexpr const char *kTestRun = QT_TRANSLATE_NOOP("TDocument", "Performing test run");

/// What is known of so many files is collected at once; of more, in portions.
constexpr std::size_t kCollectedAtOnce = 1000;

} // namespace

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

TDocumentFacts TDocument::facts()
{
    if (!m_facts) {
        TDocumentFactList list;
        list.reserve(m_sourceObjectArray.size());
        for (const auto &file : m_sourceObjectArray)
            list.add(*file);
        m_facts = std::make_shared<const TDocumentFactList>(std::move(list));
        m_factFiles = std::make_shared<const TFileList>(m_sourceObjectArray);
    }
    return m_facts;
}

void TDocument::forgetFacts()
{
    m_facts.reset();
    m_factFiles.reset();
}

void TDocument::forgetCollected()
{
    m_collected.clear();
    m_collectedFiles.clear();
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
    const TDocumentFacts known = facts();
    return {known,
            m_factFiles,
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
    forgetFacts();
    ++m_metadataVersion;
    batchChanged();
    ++m_testRunVersion; // one that is under way goes on, since the last file brings a new one
    if (--m_remainingAOps > 0)
        return;
    setStatus(kTestRun);
    doBackgroundRun();
    idleStatus();
    tell(&TDocumentHost::setBusy, false);
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
    if (m_facts || m_sourceObjectArray.size() <= kCollectedAtOnce)
        return startBackgroundRun();
    m_analysis.cancel();
    if (m_collectedMetadata != m_metadataVersion)
        forgetCollected();
    m_collectedMetadata = m_metadataVersion;
    m_isCollecting = true;
    collectFacts();
}

void TDocument::startBackgroundRun()
{
    m_isCollecting = false;
    if (m_isForecastOnly)
        return m_analysis.startForecast(analysisInput());
    // The run evaluates a copy from before the document's own rules are prepared.
    m_analysis.start(analysisInput());
    NameGeneration::prepareAllRules(m_ruleArray);
}

/// A portion of the facts of a long list, from which the run starts when all are there.
void TDocument::collectFacts()
{
    if (!m_isCollecting || m_isCollectingPosted)
        return;
    if (m_collectedVersion != m_listVersion)
        forgetCollected();
    m_collectedVersion = m_listVersion;
    m_collected.reserve(m_sourceObjectArray.size());
    m_collectedFiles.reserve(m_sourceObjectArray.size());
    const TDocumentSlice slice;
    while (m_collected.count() < m_sourceObjectArray.size()) {
        const auto &file = m_sourceObjectArray[m_collected.count()];
        m_collected.add(*file);
        m_collectedFiles.push_back(file);
        if (!slice.isOver())
            continue;
        m_isCollectingPosted = true;
        return m_mail->post([this] {
            m_isCollectingPosted = false;
            collectFacts();
        });
    }
    m_facts = std::make_shared<const TDocumentFactList>(std::move(m_collected));
    m_factFiles = std::make_shared<const TFileList>(std::move(m_collectedFiles));
    forgetCollected();
    startBackgroundRun();
    if (m_collectedMetadata != m_metadataVersion)
        forgetFacts();
}

void TDocument::doBackgroundRunIfUpdate()
{
    if (hasProcessedFiles(m_sourceObjectArray))
        redisplay();
    else if (m_liveUpdate)
        doBackgroundRun();
}

void TDocument::backgroundRunCompleteForLog(TErrorLog &log)
{
    m_errorLog = std::move(log);
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
    m_testRun.reset();
    m_isCollecting = false;
    forgetCollected();
    m_renameWanted = false;
    tell(&TDocumentHost::hideProgress);
}
