// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TDocumentDrop.h"

#include "document/TDocumentSlice.h"

#include <QCoreApplication>

#include <fcntl.h>
#include <utility>

namespace {

constexpr const char *kContext = "TDocument";
constexpr const char *kReceiving = QT_TRANSLATE_NOOP("TDocument", "Receiving drop...");
constexpr const char *kPreprocessing = QT_TRANSLATE_NOOP("TDocument", "preprocessing drop...");
constexpr const char *kCleaning = QT_TRANSLATE_NOOP("TDocument", "cleaning up drop...");
constexpr const char *kCleaningCount =
    QT_TRANSLATE_NOOP("TDocument", "cleaning up drop... (%ld/%ld)");
constexpr const char *kAnalysing = QT_TRANSLATE_NOOP("TDocument", "Analysing drop...");
constexpr const char *kAnalysingCount =
    QT_TRANSLATE_NOOP("TDocument", "Analysing drop... (%ld of %ld)");
constexpr qsizetype kStatusStep = 100;

QString text(const char *source)
{
    return QCoreApplication::translate(kContext, source);
}

QString counted(const char *source, qsizetype done, qsizetype total)
{
    return formatted(text(source), {QString::number(done), QString::number(total)});
}

/// Device and inode, of what a link leads to; of the link itself when that is missing.
std::pair<quint64, quint64> identityOf(FileManager &fileManager, const TFileItem &item)
{
    TFileStatus status;
    if (item.facts.kind == TFileStatus::Kind::Link &&
        fileManager.status(AT_FDCWD, item.url.fileSystemPath(), true, status) == 0)
        return {status.device, status.inode};
    return {item.facts.device, item.facts.inode};
}

} // namespace

TDocumentDrop::TDocumentDrop(FileManager &fileManager, TDocumentMailPtr mail, Batch batch)
    : m_fileManager(fileManager)
    , m_mail(std::move(mail))
    , m_batch(std::move(batch))
{
}

TDocumentDrop::~TDocumentDrop()
{
    *m_isAlive = false;
}

void TDocumentDrop::start(TFileURLs urls)
{
    m_batch.status(text(kReceiving));
    m_worker.run([&disk = m_fileManager, mail = m_mail, alive = m_isAlive, urls = std::move(urls),
                  this](const std::stop_token &stop) {
        auto found = std::make_shared<Found>(listed(disk, urls, stop));
        mail->post([alive, found, this] {
            if (*alive)
                received(found);
        });
    });
}

TDocumentDrop::Found TDocumentDrop::listed(FileManager &fileManager, const TFileURLs &urls,
                                           const std::stop_token &stop)
{
    FileExpansion expansion(fileManager);
    for (const TFileURL &url : urls)
        expansion.add(url.path(), stop);
    Found found;
    found.folders = expansion.listedFolders();
    found.problems = expansion.problems();
    found.items = expansion.takeFiles();
    found.identities.reserve(found.items.size());
    for (const TFileItem &item : found.items) {
        if (stop.stop_requested())
            return {};
        found.identities.push_back(identityOf(fileManager, item));
    }
    return found;
}

void TDocumentDrop::received(std::shared_ptr<Found> found)
{
    m_found = std::move(found);
    m_batch.status(text(kPreprocessing));
    proceed(&TDocumentDrop::grantOne);
}

void TDocumentDrop::proceed(Step step)
{
    m_step = step;
    m_place = 0;
    postWork();
}

void TDocumentDrop::postWork()
{
    m_mail->post([alive = m_isAlive, this] {
        if (*alive)
            work();
    });
}

void TDocumentDrop::resume()
{
    m_isSuspended = false;
    if (std::exchange(m_isWaiting, false))
        postWork();
}

void TDocumentDrop::work()
{
    if (m_isSuspended) {
        m_isWaiting = true;
        return;
    }
    const TDocumentSlice slice;
    while ((this->*m_step)()) {
        if (slice.isOver()) {
            m_batch.showAdded();
            postWork();
            return;
        }
    }
    nextStage();
}

void TDocumentDrop::nextStage()
{
    if (m_step == &TDocumentDrop::grantOne) {
        m_batch.status(text(kCleaning));
        m_droppedPaths.reserve(static_cast<qsizetype>(m_found->items.size()));
        proceed(&TDocumentDrop::cleanOne);
    } else if (m_step == &TDocumentDrop::cleanOne) {
        m_batch.status(text(kAnalysing));
        m_snapshot = m_batch.snapshot();
        m_paths.reserve(static_cast<qsizetype>(m_snapshot.size()));
        m_identities.reserve(static_cast<qsizetype>(m_snapshot.size()));
        proceed(&TDocumentDrop::indexOne);
    } else if (m_step == &TDocumentDrop::indexOne) {
        proceed(&TDocumentDrop::addOne);
    } else {
        m_batch.showAdded();
        const auto finished = m_batch.finished; // which may be the end of this drop
        const auto found = m_found;
        finished(found->problems);
    }
}

bool TDocumentDrop::grantOne()
{
    if (m_place == m_found->folders.size())
        return false;
    m_batch.addFolder(m_found->folders[m_place++]);
    return true;
}

bool TDocumentDrop::cleanOne()
{
    if (m_place == m_found->items.size())
        return false;
    if (m_droppedPaths.insert(Hash128::of(m_found->items[m_place].url.path())))
        m_clean.push_back(m_place);
    const auto done = static_cast<qsizetype>(++m_place);
    if (done % kStatusStep == 0)
        m_batch.status(
            counted(kCleaningCount, done, static_cast<qsizetype>(m_found->items.size())));
    return true;
}

bool TDocumentDrop::indexOne()
{
    if (m_place == m_snapshot.size())
        return false;
    const TFileItem &item = m_snapshot[m_place]->item();
    m_paths.insert(Hash128::of(item.url.path()));
    m_identities.insert(identityOf(m_fileManager, item), m_place);
    ++m_place;
    return true;
}

bool TDocumentDrop::addOne()
{
    if (m_place == m_clean.size())
        return false;
    const std::size_t item = m_clean[m_place++];
    if (!isUnique(item))
        return true;
    const auto total = static_cast<qsizetype>(m_clean.size());
    m_batch.add(m_found->items[item], total);
    if (++m_added % kStatusStep == 0)
        m_batch.status(counted(kAnalysingCount, m_added, total));
    return true;
}

bool TDocumentDrop::isUnique(std::size_t item) const
{
    if (m_paths.contains(Hash128::of(m_found->items[item].url.path())))
        return false;
    const Identity &identity = m_found->identities[item];
    for (auto it = m_identities.constFind(identity);
         it != m_identities.constEnd() && it.key() == identity; ++it)
        if (isStillThere(*m_snapshot[it.value()], identity))
            return false;
    return true;
}

bool TDocumentDrop::isStillThere(const TFileObject &entry, const Identity &identity) const
{
    // The entry's file may have gone since, and its inode may be somebody else's by now.
    TFileItem item = entry.item();
    TFileStatus status;
    if (m_fileManager.status(AT_FDCWD, item.url.fileSystemPath(), false, status) != 0)
        return false;
    item.facts = TFileFacts::fromStatus(status);
    return identityOf(m_fileManager, item) == identity;
}
