// SPDX-License-Identifier: GPL-3.0-or-later
#include "rollback/RollbackRun.h"

#include "rollback/FolderPool.h"

#include <QHash>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kNotFound{"I was unable to find the renamed file %@"};
constexpr QLatin1StringView kNotCompleted{"The rename from %@ to %@ did not complete successfully"};
constexpr QLatin1StringView kOldNameInUse{
    "The originally named file exists at %@, will use safe naming"};
constexpr QLatin1StringView kRollbackFailed{"Rollback failed: %@"};
constexpr QLatin1StringView kSkipped{"Skipped rolling back this file"};
constexpr qsizetype kProgressStep = 10;
/// How often a name that somebody takes at the last moment is replaced by the next free one.
constexpr int kAttempts = 100;

bool wasCompleted(const TRenameTRX &record)
{
    return record.renameComplete && record.isTrustworthy();
}

void report(const RollbackRun::Progress &progress, qsizetype number, qsizetype total)
{
    if (progress && number % kProgressStep == 0)
        progress(number, total);
}

/// Where a file of a record stands, for comparing within one run; folders are pooled.
using Place = std::pair<const TFolder *, QString>;

Place placeOf(const TFileURL &url)
{
    return {url.folder().get(), url.lastPathComponent()};
}

} // namespace

RollbackRun::RollbackRun(FileManager &fileManager, std::vector<TRenameTRX> transactions)
    : m_fileManager(fileManager)
    , m_mover(fileManager)
    , m_picture(std::make_unique<FolderPicture>(fileManager))
    , m_transactions(std::move(transactions))
{
    FolderPool folders;
    for (TRenameTRX &record : m_transactions) {
        record.originalURL = folders.shared(record.originalURL);
        record.renamedURL = folders.shared(record.renamedURL);
    }
}

bool RollbackRun::exists(const TFileURL &url)
{
    return url.isValid() && m_mover.exists(*url.folder(), url.lastPathComponent());
}

void RollbackRun::processLog(const Progress &progress)
{
    const auto total = static_cast<qsizetype>(m_transactions.size());
    qsizetype number = 0;
    for (TRenameTRX &record : m_transactions) {
        processRecord(record);
        report(progress, ++number, total);
    }
}

void RollbackRun::processRecord(TRenameTRX &record)
{
    record.errorLog.clear();
    record.renamedExistsWithStatus = kNothing;
    const QString &renamedName = record.renamedURL.lastPathComponent();
    if (!wasCompleted(record))
        record.errorLog.addErrorOfType(
            TErrorTypes::kCritical,
            formatted(kNotCompleted, {record.originalURL.lastPathComponent(), renamedName}));
    else if (exists(record.renamedURL))
        record.renamedExistsWithStatus = kRenamedFound;
    else
        record.errorLog.addErrorOfType(TErrorTypes::kCritical, formatted(kNotFound, {renamedName}));

    if (record.renamedExistsWithStatus == kNothing && exists(record.originalURL)) {
        record.renamedExistsWithStatus = kOccupied;
        record.errorLog.addErrorOfType(TErrorTypes::kWarning,
                                       formatted(kOldNameInUse, {record.originalURL.path()}));
    }
}

void RollbackRun::performRollBack(const Progress &progress, const std::atomic<bool> &abort,
                                  bool reverse, const Restored &restored)
{
    announceFolders();
    const auto total = static_cast<qsizetype>(m_transactions.size());
    for (qsizetype number = 1; number <= total && !abort.load(); ++number) {
        rollBack(reverse ? total - number : number - 1, restored);
        report(progress, number, total);
    }
}

/// Folders may have changed since the first pass, so they are read afresh.
void RollbackRun::announceFolders()
{
    m_picture = std::make_unique<FolderPicture>(m_fileManager);
    QHash<const TFolder *, std::pair<TFolderPtr, qsizetype>> counts;
    for (const TRenameTRX &record : m_transactions)
        if (record.renamedExistsWithStatus == kRenamedFound) {
            auto &[folder, count] = counts[record.originalURL.folder().get()];
            folder = record.originalURL.folder();
            ++count;
        }
    for (const auto &[folder, count] : std::as_const(counts))
        m_picture->announce(folder, count);
}

void RollbackRun::rollBack(qsizetype index, const Restored &restored)
{
    TRenameTRX &record = m_transactions[static_cast<std::size_t>(index)];
    record.errorLog.clear();
    if (record.renamedExistsWithStatus != kRenamedFound) {
        record.errorLog.addErrorOfType(TErrorTypes::kCritical, kSkipped);
        return;
    }
    TFileURL target;
    const TMoveResult result = moveBack(record, target);
    record.renamedExistsWithStatus = result.ok() ? kRestored : kFailed;
    if (!result.ok())
        record.errorLog.addErrorOfType(TErrorTypes::kCritical,
                                       formatted(kRollbackFailed, {result.text}));
    else if (restored)
        restored(index, target);
}

TMoveResult RollbackRun::moveBack(const TRenameTRX &record, TFileURL &target)
{
    const TFolder &folder = *record.originalURL.folder();
    const QString &from = record.renamedURL.lastPathComponent();
    TMoveResult result;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        target = makeSafeURLFromURL(record.originalURL);
        const QString &to = target.lastPathComponent();
        result = m_mover.move(folder, from, to);
        if (result.ok()) {
            m_picture->moved(folder, from, to);
            break;
        }
        // Somebody took the name meanwhile. A name without extension is tested with a dot at its
        // end, so another round would give the same name again.
        if (result.error != EEXIST || getExtensionFromFileName(to).isEmpty())
            break;
        m_picture->taken(folder, to);
    }
    return result;
}

TFileURL RollbackRun::makeSafeURLFromURL(const TFileURL &url)
{
    const QString &name = url.lastPathComponent();
    const QString extension = getExtensionFromFileName(name);
    const QString base =
        m_picture->uniqueBase(*url.folder(), removeExtensionFromFilename(name), extension);
    return {url.folder(), extension.isEmpty() ? base : base + u'.' + extension};
}

bool RollbackRun::recommendsReverse() const
{
    QHash<Place, qsizetype> renamed;
    renamed.reserve(static_cast<qsizetype>(m_transactions.size()));
    qsizetype index = 0;
    for (const TRenameTRX &record : m_transactions) {
        if (wasCompleted(record))
            renamed.insert(placeOf(record.renamedURL), index);
        ++index;
    }
    index = 0;
    for (const TRenameTRX &record : m_transactions) {
        if (wasCompleted(record)) {
            const auto other = renamed.constFind(placeOf(record.originalURL));
            if (other != renamed.cend() && *other != index)
                return true;
        }
        ++index;
    }
    return false;
}
