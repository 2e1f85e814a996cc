// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TDocument.h"

#include <algorithm>

namespace {

constexpr const char *kGathering =
    QT_TRANSLATE_NOOP("TDocument", "gathering secondary file information");
constexpr const char *kTestRun = QT_TRANSLATE_NOOP("TDocument", "Performing test run");

} // namespace

/// Goes on with what is in the queue, or tells that there is nothing.
void TDocument::gather()
{
    if (m_remainingAOps > 0) {
        setStatus(kGathering);
        tell(&TDocumentHost::setBusy, true);
    } else {
        idleStatus();
    }
    m_gathering.resume();
    followNamesAge();
    Q_EMIT workChanged();
}

void TDocument::gatheringComplete()
{
    setStatus(kTestRun);
    doBackgroundRun();
    idleStatus();
    tell(&TDocumentHost::setBusy, false);
    Q_EMIT workChanged();
}

/// After files have left the list or come back to it.
void TDocument::gatherOnlyListed()
{
    const bool wasGathering = m_remainingAOps > 0;
    if (m_gathering.keepOnly(m_sourceObjectArray))
        m_hasUngathered = true;
    if (m_hasUngathered && !m_lacksMetadata)
        m_gathering.addMissing(m_sourceObjectArray);
    m_remainingAOps = static_cast<qint64>(m_gathering.count());
    if (isReceivingDrop())
        return; // which goes on with them
    if (wasGathering && m_remainingAOps == 0)
        gatheringComplete();
    else
        gather();
}

void TDocument::gatherMissing()
{
    m_lacksMetadata = false;
    m_gathering.addMissing(m_sourceObjectArray);
    m_remainingAOps = static_cast<qint64>(m_gathering.count());
    if (!isReceivingDrop())
        gather();
}

void TDocument::cancelWork()
{
    m_renameWanted = false;
    if (m_testRun)
        cancelTestRun();
    if (!isReceivingDrop() && m_remainingAOps == 0)
        return;
    m_gathering.cancel();
    m_remainingAOps = 0;
    m_lacksMetadata =
        std::any_of(m_sourceObjectArray.begin(), m_sourceObjectArray.end(),
                    [](const auto &file) { return TDocumentGathering::isMissing(*file); });
    cancelDrops();
    redisplay();
    Q_EMIT foldersChanged();
    gatheringComplete();
}

/// Its names are those of the recipe as far as it came; live update brings the others.
void TDocument::cancelTestRun()
{
    endTestRun();
    tell(&TDocumentHost::hideProgress);
    doBackgroundRunIfUpdate();
    Q_EMIT workChanged();
}
