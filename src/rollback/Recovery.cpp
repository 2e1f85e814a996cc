// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/ByteNames.h"
#include "rollback/BootId.h"
#include "rollback/FrameWriter.h"
#include "rollback/JournalContents.h"
#include "rollback/JournalFolder.h"
#include "rollback/RecoveryMatcher.h"
#include "rollback/RecoveryProgress.h"
#include "rollback/RollbackLog.h"
#include "rollback/RunJournal.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kUnreadable{
    "The journal \"%1\" of an interrupted run cannot be read and has been set aside: %2."};
constexpr QLatin1StringView kAbsent{
    "The folder \"%1\" of an interrupted run is not there or cannot "
    "be read. What the run renamed in it will be looked for again at "
    "the next start."};
/// File systems keep times of a clock that advances in steps.
constexpr qint64 kClockSteps = TDate::kNanosPerSecond;
constexpr qint64 kWaitForFolders = 30LL * 24 * 60 * 60 * TDate::kNanosPerSecond;

/// One journal that no run holds any more.
class Recovery
{
public:
    Recovery(const JournalFolder &folder, FileManager &fileManager, const Clock &clock,
             RecoveryProgress *progress)
        : m_folder(folder)
        , m_fileManager(fileManager)
        , m_clock(clock)
        , m_progress(progress)
    {
    }

    struct Journal
    {
        QByteArray name;
        OpenFile file;
        TResult<JournalContents> contents;
    };
    /// Touches nothing but the journals.
    static Journal read(const QByteArray &name, OpenFile file);
    /// Nothing when there is nothing to tell: the run had finished after all.
    std::optional<RecoveredRun> recover(Journal source) const;

private:
    RecoveredRun setAside(const QByteArray &name, const QString &why) const;
    bool waitsForFolder(const JournalContents &journal, const RecoveryMatcher &matcher) const;
    QString findLog(const JournalContents &journal, const RecoveryMatcher &matcher) const;
    TResult<QString> writeLog(const JournalContents &journal, const RecoveryMatcher &matcher) const;
    void close(const JournalContents &journal, QByteArray name, const OpenFile &file,
               const QString &log) const;

    const JournalFolder &m_folder;
    FileManager &m_fileManager;
    const Clock &m_clock;
    RecoveryProgress *m_progress;
};

QString shown(const QByteArray &path)
{
    return ByteNames::forDisplay(ByteNames::fromBytes(path));
}

RecoveredRun counted(const RecoveryMatcher &matcher)
{
    RecoveredRun run;
    run.files = static_cast<qsizetype>(matcher.outcomes().size());
    for (const RecoveryMatcher::Outcome &outcome : matcher.outcomes()) {
        run.renamed += outcome.fate == RecoveryMatcher::Fate::Renamed ? 1 : 0;
        run.unknown += outcome.fate == RecoveryMatcher::Fate::Unknown ? 1 : 0;
    }
    return run;
}

Recovery::Journal Recovery::read(const QByteArray &name, OpenFile file)
{
    QFile device;
    device.open(file.descriptor(), QIODevice::ReadOnly);
    return {name, std::move(file), JournalContents::read(device)};
}

std::optional<RecoveredRun> Recovery::recover(Journal source) const
{
    auto &[name, file, contents] = source;
    if (!contents)
        return setAside(name, contents.message());
    const JournalContents &journal = contents.value();
    const QByteArray bootId = currentBootId();
    RecoveryMatcher matcher(m_fileManager, journal, !bootId.isEmpty() && bootId == journal.bootId(),
                            m_progress);
    matcher.match();
    if (!waitsForFolder(journal, matcher))
        matcher.endHalfMoves();
    RecoveredRun run = counted(matcher);
    if (run.renamed > 0)
        run.rollbackLog = findLog(journal, matcher);
    if (journal.isFinished()) {
        m_folder.keepFinished(name, file, journal.end(), JournalFolder::nameOf(run.rollbackLog));
        return {};
    }
    if (waitsForFolder(journal, matcher)) {
        run.rollbackLog.clear();
        run.problem = QString(kAbsent).arg(shown(matcher.absentFolder()));
        return run;
    }
    if (run.renamed + run.unknown > 0 && run.rollbackLog.isEmpty()) {
        const TResult<QString> log = writeLog(journal, matcher);
        if (!log) {
            run.problem = log.message();
            return run;
        }
        run.rollbackLog = log.value();
    }
    close(journal, std::move(name), file, run.rollbackLog);
    return run;
}

RecoveredRun Recovery::setAside(const QByteArray &name, const QString &why) const
{
    const QByteArray aside = name + JournalFolder::kUnreadable.toByteArray();
    const bool moved = m_folder.rename(name, aside) == 0;
    RecoveredRun run;
    run.problem = QString(kUnreadable).arg(shown(m_folder.pathOf(moved ? aside : name)), why);
    return run;
}

bool Recovery::waitsForFolder(const JournalContents &journal, const RecoveryMatcher &matcher) const
{
    const qint64 age = m_clock.now().nanos - journal.time().nanos;
    return !matcher.absentFolder().isEmpty() && age >= 0 && age < kWaitForFolders;
}

/// The log that the run had put in place before it died, or an earlier recovery; empty when there
/// is none. A second log of the same moves would offer to undo them twice.
QString Recovery::findLog(const JournalContents &journal, const RecoveryMatcher &matcher) const
{
    const auto hasMoves = [&](const std::vector<TRenameTRX> &records) {
        std::size_t next = 0;
        const auto nextMove = [&] {
            while (next < records.size() && (!records[next].renameComplete ||
                                             records[next].originalURL == records[next].renamedURL))
                ++next;
            return next < records.size() ? &records[next++] : nullptr;
        };
        for (std::size_t i = 0; i < journal.files().size(); ++i) {
            const RecoveryMatcher::Outcome &outcome = matcher.outcomes()[i];
            if (outcome.fate != RecoveryMatcher::Fate::Renamed)
                continue;
            const QByteArray folder = journal.folders()[journal.files()[i].folder] + '/';
            const TRenameTRX *record = nextMove();
            if (record == nullptr ||
                record->originalURL.fileSystemPath() !=
                    folder + journal.text(journal.files()[i].name).toByteArray() ||
                record->renamedURL.fileSystemPath() != folder + outcome.newName)
                return false;
        }
        return nextMove() == nullptr;
    };
    const QString logs = ByteNames::fromBytes(m_folder.logsPath());
    const TDate start{journal.time().nanos - kClockSteps};
    for (const QString &path : rollbackLogPathsSince(logs, start))
        if (const auto records = readRollbackLog(path); records && hasMoves(records.value()))
            return path;
    return {};
}

/// The log that the run would have left: what was renamed, and as not completed what is unknown.
TResult<QString> Recovery::writeLog(const JournalContents &journal,
                                    const RecoveryMatcher &matcher) const
{
    auto writer = RollbackLogWriter::create(ByteNames::fromBytes(m_folder.logsPath()));
    if (!writer)
        return TResult<QString>::failure(writer.message());
    std::vector<TFolderPtr> folders;
    for (const QByteArray &path : journal.folders())
        folders.push_back(std::make_shared<const TFolder>(ByteNames::fromBytes(path)));
    for (std::size_t i = 0; i < journal.files().size(); ++i) {
        const RecoveryMatcher::Outcome &outcome = matcher.outcomes()[i];
        if (outcome.fate == RecoveryMatcher::Fate::Untouched)
            continue;
        const JournalContents::File &file = journal.files()[i];
        const TFolderPtr &folder = folders[file.folder];
        TRenameTRX transaction =
            TRenameTRX::TRXWithSource({folder, ByteNames::fromBytes(journal.text(file.name))});
        if (!outcome.newName.isEmpty())
            transaction.renamedURL = {folder, ByteNames::fromBytes(outcome.newName)};
        transaction.insured = true;
        transaction.renameComplete = outcome.fate == RecoveryMatcher::Fate::Renamed;
        writer.value()->append(transaction);
    }
    const TDate time = journal.time();
    return writer.value()->finish(time.isSet() ? time : m_clock.now(), true);
}

/// Marks the journal finished. Should that fail, the next start does it.
void Recovery::close(const JournalContents &journal, QByteArray name, const OpenFile &file,
                     const QString &log) const
{
    FrameWriter writer(file.descriptor(), journal.nextSequence());
    writer.begin(JournalFormat::Record::Finished, 0);
    if (::lseek(file.descriptor(), journal.end(), SEEK_SET) == journal.end())
        writer.flush();
    m_folder.keepFinished(name, file, journal.end() + writer.written(), JournalFolder::nameOf(log));
}

/// Plans and logs of programs that ended before they were any use.
void removeLeftovers(const JournalFolder &folder)
{
    for (const QByteArrayView ending : {JournalFolder::kPlanning, JournalFolder::kPartialLog})
        if (const auto names = folder.names(ending))
            for (const QByteArray &name : names.value())
                if (const auto file = folder.openLocked(name); file && file.value().isOpen())
                    folder.remove(name);
}

} // namespace

std::vector<RecoveredRun> recoverInterruptedRuns(const QString &logsFolder,
                                                 FileManager &fileManager, const Clock &clock,
                                                 RecoveryProgress *progress)
{
    std::vector<RecoveredRun> runs;
    const auto addProblem = [&runs](const QString &problem) {
        runs.emplace_back().problem = problem;
    };
    int error = 0;
    const TResult<JournalFolder> folder = JournalFolder::openExisting(logsFolder, &error);
    if (!folder) {
        if (error != ENOENT && error != ENOTDIR)
            addProblem(folder.message());
        return runs;
    }
    removeLeftovers(folder.value());
    const auto names = folder.value().names(JournalFolder::kRunning);
    if (!names) {
        addProblem(names.message());
        return runs;
    }
    std::vector<Recovery::Journal> journals;
    std::vector<QByteArray> concerned;
    for (const QByteArray &name : names.value()) {
        TResult<OpenFile> file = folder.value().openLocked(name);
        if (!file)
            addProblem(file.message());
        if (!file || !file.value().isOpen())
            continue;
        journals.push_back(Recovery::read(name, std::move(file).value()));
        if (const auto &contents = journals.back().contents)
            concerned.insert(concerned.end(), contents.value().folders().begin(),
                             contents.value().folders().end());
    }
    if (progress != nullptr)
        progress->setFolders(std::move(concerned));
    const Recovery recovery(folder.value(), fileManager, clock, progress);
    for (Recovery::Journal &journal : journals)
        if (std::optional<RecoveredRun> run = recovery.recover(std::move(journal)))
            runs.push_back(std::move(*run));
    return runs;
}
