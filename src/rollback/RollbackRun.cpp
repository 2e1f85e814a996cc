// SPDX-License-Identifier: GPL-3.0-or-later
#include "rollback/RollbackRun.h"

#include "commonprocs/FolderRuns.h"
#include "commonprocs/HashSet128.h"
#include "commonprocs/TwoHalves.h"
#include "rollback/FolderPool.h"

#include <algorithm>
#include <cerrno>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kNotFound{"I was unable to find the renamed file %@"};
constexpr QLatin1StringView kNotCompleted{"The rename from %@ to %@ did not complete successfully"};
constexpr QLatin1StringView kOldNameInUse{
    "The originally named file exists at %@, will use safe naming"};
constexpr QLatin1StringView kRollbackFailed{"Rollback failed: %@"};
constexpr QLatin1StringView kSkipped{"Skipped rolling back this file"};
constexpr qsizetype kProgressStep = 10;
/// How many files are looked for at a time, by two threads; few enough to stop soon.
constexpr std::size_t kLookedForAtOnce = 2048;
/// How often a name that somebody takes at the last moment is replaced by the next free one.
constexpr int kAttempts = 100;

void report(const RollbackRun::Progress &progress, qsizetype number, qsizetype total)
{
    if (progress && number % kProgressStep == 0)
        progress(number, total);
}

/// What tells one file of the records from another; folders are pooled, so their addresses do.
Hash128 placeOf(const TFileURL &url)
{
    Hash128 hash = Hash128::of(url.lastPathComponent());
    hash.high ^= reinterpret_cast<quintptr>(url.folder().get());
    return hash;
}

} // namespace

RollbackRun::RollbackRun(FileManager &fileManager, std::vector<TRenameTRX> transactions,
                         const QString &rollbackLog)
    : m_fileManager(fileManager)
    , m_mover(fileManager)
    , m_secondMover(fileManager)
    , m_rollbackLog(rollbackLog)
    , m_transactions(std::move(transactions))
{
    FolderPool folders;
    for (TRenameTRX &record : m_transactions) {
        record.originalURL = folders.shared(record.originalURL);
        record.renamedURL = folders.shared(record.renamedURL);
        m_completed.push_back(record.renameComplete && record.isTrustworthy());
    }
    m_chained = formsChains();
}

bool RollbackRun::exists(FileMover &mover, const TFileURL &url)
{
    return url.isValid() && mover.exists(*url.folder(), url.lastPathComponent());
}

/// A file that has already been brought back may stand where another one was renamed to.
bool RollbackRun::findsRenamed(FileMover &mover, std::size_t index) const
{
    const TFileURL &renamed = m_transactions[index].renamedURL;
    TFileStatus status;
    return mover.status(*renamed.folder(), renamed.lastPathComponent(), status) == 0 &&
           !m_files.isAnother(m_transactions[index].originalURL, status);
}

void RollbackRun::processLog(const Progress &progress, const std::atomic<bool> *abort)
{
    const auto total = static_cast<qsizetype>(m_transactions.size());
    m_found.assign(m_transactions.size(), 0);
    if (!m_rollbackLog.isEmpty() && m_chained)
        m_files = PlannedFiles::ofRun(m_rollbackLog);
    else
        listFolders();
    std::size_t lookedFor = 0;
    for (qsizetype number = 1; number <= total && (abort == nullptr || !*abort); ++number) {
        const auto index = static_cast<std::size_t>(number - 1);
        if (index == lookedFor) {
            lookedFor = std::min(lookedFor + kLookedForAtOnce, m_transactions.size());
            lookFor(index, lookedFor);
        }
        processRecord(index);
        report(progress, number, total);
    }
    m_names = {};
}

/// Where every name that a run gave was new, a file that has it is the run's, and it is enough to
/// know which names are there.
void RollbackRun::listFolders()
{
    forEachFolderRun(
        m_transactions.size(),
        [this](std::size_t i) -> const TFolderPtr & {
            return m_transactions[i].renamedURL.folder();
        },
        [this](const TFolderPtr &folder, qsizetype names) {
            m_names.list(m_fileManager, folder, names);
        });
}

void RollbackRun::lookFor(std::size_t first, std::size_t end)
{
    std::vector<std::size_t> unlisted;
    for (std::size_t i = first; i < end; ++i) {
        const TFileURL &renamed = m_transactions[i].renamedURL;
        if (!m_completed[i] || !renamed.isValid())
            continue;
        m_found[i] = m_names.contain(renamed) ? 1 : 0;
        if (m_found[i] == 0)
            unlisted.push_back(i);
    }
    inTwoHalves(0, unlisted.size(), [&](std::size_t from, std::size_t to, int half) {
        FileMover &mover = half == 0 ? m_mover : m_secondMover;
        for (std::size_t i = from; i < to; ++i)
            m_found[unlisted[i]] = findsRenamed(mover, unlisted[i]) ? 1 : 0;
    });
}

void RollbackRun::processRecord(std::size_t index)
{
    TRenameTRX &record = m_transactions[index];
    record.errorLog.clear();
    record.renamedExistsWithStatus = kNothing;
    const QString &renamedName = record.renamedURL.lastPathComponent();
    if (!m_completed[index])
        record.errorLog.addErrorOfType(
            TErrorTypes::kCritical,
            formatted(kNotCompleted, {record.originalURL.lastPathComponent(), renamedName}));
    else if (m_found[index] != 0)
        record.renamedExistsWithStatus = kRenamedFound;
    else
        record.errorLog.addErrorOfType(TErrorTypes::kCritical, formatted(kNotFound, {renamedName}));

    if (record.renamedExistsWithStatus == kNothing && exists(m_mover, record.originalURL)) {
        record.renamedExistsWithStatus = kOccupied;
        record.errorLog.addErrorOfType(TErrorTypes::kWarning,
                                       formatted(kOldNameInUse, {record.originalURL.path()}));
    }
}

void RollbackRun::performRollBack(const Progress &progress, const std::atomic<bool> &abort,
                                  bool reverse, const Restored &restored)
{
    m_picture.reset(); // the folders may have changed since the first pass
    const auto total = static_cast<qsizetype>(m_transactions.size());
    for (qsizetype number = 1; number <= total && !abort.load(); ++number) {
        rollBack(reverse ? total - number : number - 1, restored);
        report(progress, number, total);
    }
}

/// Made when the first name is in use, from the folders as they are then.
FolderPicture &RollbackRun::picture()
{
    if (m_picture)
        return *m_picture;
    m_picture = std::make_unique<FolderPicture>(m_fileManager);
    const TFolderPtr none;
    forEachFolderRun(
        m_transactions.size(),
        [&](std::size_t i) -> const TFolderPtr & {
            const TRenameTRX &record = m_transactions[i];
            return record.renamedExistsWithStatus == kRenamedFound ? record.originalURL.folder()
                                                                   : none;
        },
        [this](const TFolderPtr &folder, qsizetype files) { m_picture->announce(folder, files); });
    return *m_picture;
}

void RollbackRun::rollBack(qsizetype index, const Restored &restored)
{
    TRenameTRX &record = m_transactions[static_cast<std::size_t>(index)];
    record.errorLog.clear();
    if (record.renamedExistsWithStatus != kRenamedFound) {
        record.errorLog.addErrorOfType(TErrorTypes::kCritical, QString(kSkipped));
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

/// For a name with an extension, "is it free" and "does the guarded move take it" are one question,
/// so the move itself asks it; the picture of the folder is only made when a name is in use.
TMoveResult RollbackRun::moveBack(const TRenameTRX &record, TFileURL &target)
{
    const TFolder &folder = *record.originalURL.folder();
    const QString &from = record.renamedURL.lastPathComponent();
    const QString &oldName = record.originalURL.lastPathComponent();
    const bool hasExtension = extensionDot(oldName) >= 0;
    const bool moveTells = hasExtension && from != oldName && !m_picture;
    target = moveTells ? record.originalURL : makeSafeURLFromURL(record.originalURL);
    TMoveResult result = m_mover.move(folder, from, target.lastPathComponent());
    for (int attempt = 0; attempt < kAttempts && hasExtension && result.error == EEXIST;
         ++attempt) {
        // Without an extension the test looks for the name and a dot, and would say the same again.
        picture().taken(folder, target.lastPathComponent());
        target = makeSafeURLFromURL(record.originalURL);
        result = m_mover.move(folder, from, target.lastPathComponent());
    }
    if (result.ok() && m_picture)
        m_picture->moved(folder, from, target.lastPathComponent());
    return result;
}

TFileURL RollbackRun::makeSafeURLFromURL(const TFileURL &url)
{
    const QString &name = url.lastPathComponent();
    const QString extension = getExtensionFromFileName(name);
    const QString base =
        picture().uniqueBase(*url.folder(), removeExtensionFromFilename(name), extension);
    return {url.folder(), extension.isEmpty() ? base : base + u'.' + extension};
}

bool RollbackRun::formsChains() const
{
    // A file that was moved onto itself is in nobody's way.
    const auto takesPart = [this](std::size_t index) {
        const TRenameTRX &record = m_transactions[index];
        return m_completed[index] &&
               record.originalURL.lastPathComponent() != record.renamedURL.lastPathComponent();
    };
    HashSet128 renamed;
    renamed.reserve(static_cast<qsizetype>(m_transactions.size()));
    for (std::size_t i = 0; i < m_transactions.size(); ++i)
        if (takesPart(i))
            renamed.insert(placeOf(m_transactions[i].renamedURL));
    for (std::size_t i = 0; i < m_transactions.size(); ++i)
        if (takesPart(i) && renamed.contains(placeOf(m_transactions[i].originalURL)))
            return true;
    return false;
}
