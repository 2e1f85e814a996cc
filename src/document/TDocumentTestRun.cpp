// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TDocument.h"
#include "document/TDocumentDrop.h"
#include "document/TDocumentSlice.h"

namespace {

/// A test run over so many files is over when the command returns, unless their names take longer.
constexpr std::size_t kTestedAtOnce = 1000;
constexpr std::chrono::milliseconds kLongestAtOnce{50};

} // namespace

/// A test run on its way through the list. It evaluates the document's own rules, so it stays on
/// the main thread.
struct TDocument::TestRun
{
    TFileList files;
    TErrorLog log;
    std::unique_ptr<AnalysisStepper> stepper;
    std::size_t next = 0;
};

void TDocument::fullRunWithUpdate(bool update)
{
    cancelAnalysis();
    m_errorLog.emplace();
    analysisRun().fullRun(m_sourceObjectArray, *m_errorLog);
    fullRunComplete(update);
}

void TDocument::fullRunComplete(bool update)
{
    m_forecasts.clear(); // they may be about other names
    m_namesVersion = m_batchVersion;
    const bool isOtherAge = updateNamesAge();
    tell(&TDocumentHost::setRenameBadge,
         static_cast<qint64>(numberOfErrorsWithType(TErrorTypes::kCritical, *m_errorLog)));
    if (update || isOtherAge)
        redisplay();
    Q_EMIT errorLogChanged();
    startWhenCollected(true);
}

void TDocument::partialRunFor(const TFileList &files, bool update)
{
    analysisRun().partialRunFor(files, m_errorLog ? &*m_errorLog : nullptr);
    Q_EMIT errorLogChanged();
    if (update)
        redisplay();
}

void TDocument::testRun()
{
    cancelAnalysis();
    beginTestRun();
    Q_EMIT workChanged();
}

void TDocument::beginTestRun()
{
    m_testRun = std::make_shared<TestRun>();
    m_testRun->files = m_sourceObjectArray;
    m_testRun->stepper = analysisRun().fullRunStepper(
        static_cast<qsizetype>(m_testRun->files.size()), m_testRun->log);
    m_testRunVersion = m_batchVersion;
    if (m_drop)
        m_drop->suspend(); // the names of new files would make the rules' counters go on
    continueTestRun();
}

void TDocument::continueTestRun()
{
    if (m_testRunVersion != m_batchVersion)
        return beginTestRun();
    TestRun &run = *m_testRun;
    const std::size_t total = run.files.size();
    const bool isAtOnce = run.next == 0 && total <= kTestedAtOnce;
    const TDocumentSlice slice(isAtOnce ? kLongestAtOnce : TDocumentSlice::kLength);
    while (run.next < total) {
        run.stepper->step(*run.files[run.next++], run.log);
        if (!slice.isOver())
            continue;
        tell(&TDocumentHost::showProgress, static_cast<qint64>(run.next),
             static_cast<qint64>(total));
        return m_mail->post([this, same = std::weak_ptr(m_testRun)] {
            if (!same.expired())
                continueTestRun();
        });
    }
    testRunComplete();
}

void TDocument::endTestRun()
{
    m_testRun.reset();
    if (m_drop)
        m_drop->resume();
}

void TDocument::testRunComplete()
{
    m_errorLog = std::move(m_testRun->log);
    endTestRun();
    Q_EMIT workChanged();
    tell(&TDocumentHost::hideProgress);
    fullRunComplete(true);
    showTestRunLog();
    if (std::exchange(m_renameWanted, false))
        runRename();
}

void TDocument::showTestRunLog()
{
    const TErrorLog log = m_errorLog.value_or(TErrorLog());
    setReadyToGo(!isReceivingDrop() && numberOfErrorsWithType(TErrorTypes::kCritical, log) == 0);
    tell(&TDocumentHost::showErrorLog, log);
}

qsizetype TDocument::numberOfErrorsWithType(int errClass, const TErrorLog &log)
{
    return log.numberOfErrorsWithType(errClass);
}
