// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/RollbackCommand.h"

#include "cli/LogsFolder.h"
#include "cli/WholeFile.h"
#include "commonprocs/ByteNames.h"
#include "rollback/RollbackLog.h"

#include <algorithm>
#include <array>
#include <fcntl.h>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kInterruptedBefore{"interrupted; nothing was undone"};
constexpr QLatin1StringView kLast{"last"};
constexpr QLatin1StringView kCheck{"check"};
constexpr QLatin1StringView kReverse{"reverse"};
constexpr QLatin1StringView kYes{"yes"};

constexpr std::array kRollbackOptions{
    OptionInfo{kLast, ""_L1, "take the newest log that still has something to undo"_L1},
    OptionInfo{kCheck, ""_L1, "only show what could be undone"_L1},
    OptionInfo{
        kReverse, ""_L1,
        "go from the last record to the first; the way to undo runs that gave a file the name "
        "another one had just left"_L1},
    OptionInfo{kYes, ""_L1, "undo without asking"_L1, 'y'},
};

constexpr QLatin1StringView kText{
    "Gives the files of a past run their old names back. Each record of the log is checked against "
    "the disk first; nothing is overwritten: where an old name is in use again, \"-1\" and so on "
    "is "
    "added. The log stays as it is.\n"
    "LOG is the path of a rollback log as tavrin-cli logs shows it, or the name of its file, with "
    "or without the ending .renameLog."};

constexpr QLatin1StringView kExamples{"tavrin-cli rollback --last --check\n"
                                      "tavrin-cli rollback --last --yes"};

bool canBeUndone(const TRenameTRX &record)
{
    return record.renamedExistsWithStatus == RollbackRun::kRenamedFound;
}

bool isThere(FileManager &disk, const QString &path)
{
    TFileStatus status;
    return disk.status(AT_FDCWD, ByteNames::toBytes(path), true, status) == 0;
}

/// The path of a saved log of that name, also as logs and other messages display it; the name
/// itself when there is none.
QString pathOfNamedLog(const QString &name)
{
    const auto isNamed = [&name, shown = ByteNames::toBytes(name)](const QString &text) {
        return text == name || displayed(text) == shown;
    };
    for (const QString &path : rollbackLogPaths(LogsFolder::path())) {
        const QString file = TFileURL::fileURLWithPath(path).lastPathComponent();
        if (isNamed(path) || isNamed(file) || isNamed(removeExtensionFromFilename(file)))
            return path;
    }
    return name;
}

} // namespace

Command::Help RollbackCommand::help() const
{
    return {"rollback"_L1, "(--last | LOG) [options]"_L1, "undo a past run; asks first"_L1, kText,
            kExamples};
}

OptionGroups RollbackCommand::optionGroups() const
{
    return {{"Rollback"_L1, kRollbackOptions}, Console::batchOptions(), Console::commonOptions()};
}

int RollbackCommand::run(const CommandLine &line)
{
    if (line.has(kLast) != line.words().isEmpty() || line.words().size() > 1)
        return usageError(u"give either one log or --last"_s);
    takeOverSignals();
    if (!LogsFolder::recover(environment(), console()))
        return refuse(ExitStatus::kInterrupted, kInterruptedBefore);
    if (const auto status = line.has(kLast) ? findLast() : findNamed(line.words().first()))
        return *status;
    m_result.records = m_run->transactions();
    m_result.restored.resize(m_result.records.size());
    m_result.checkOnly = line.has(kCheck);
    if (m_run->recommendsReverse() && !line.has(kReverse))
        console().message(u"some files were given names that others of the run had just left; only "
                          "--reverse restores them all"_s);
    if (!m_result.checkOnly) {
        if (const auto status = confirm(line))
            return *status;
        return roll(line.has(kReverse));
    }
    m_result.skippedCount =
        static_cast<qsizetype>(m_result.records.size()) - count(RollbackRun::kRenamedFound);
    printRollback(console(), m_result);
    return m_result.skippedCount == 0 && !m_result.records.empty() ? ExitStatus::kDone
                                                                   : ExitStatus::kIncomplete;
}

QString RollbackCommand::pathOfLog(const QString &name)
{
    return isThere(environment().fileManager, name) ? name : pathOfNamedLog(name);
}

std::optional<int> RollbackCommand::findNamed(const QString &name)
{
    const QString path = pathOfLog(name);
    if (const QString problem = reasonNotToRead(path); !problem.isEmpty())
        return refuse(
            ExitStatus::kUsageError,
            u"cannot read the rollback log %1: %2. tavrin-cli logs lists the saved ones"_s.arg(
                name, problem));
    TResult<std::vector<TRenameTRX>> records = readRollbackLog(path);
    if (!records)
        return refuse(ExitStatus::kUsageError, records.message());
    if (!check(TFileURL::fileURLWithPath(path).path(), std::move(records).value()))
        return refuse(ExitStatus::kInterrupted, kInterruptedBefore);
    return {};
}

std::optional<int> RollbackCommand::findLast()
{
    for (const QString &path : rollbackLogPaths(LogsFolder::path())) {
        TResult<std::vector<TRenameTRX>> records = readRollbackLog(path);
        if (!records) {
            console().message(records.message());
            continue;
        }
        if (!check(path, std::move(records).value()))
            return refuse(ExitStatus::kInterrupted, kInterruptedBefore);
        if (count(RollbackRun::kRenamedFound) > 0)
            return {};
    }
    const QString problem = LogsFolder::problem(environment().fileManager);
    return refuse(ExitStatus::kIncomplete,
                  problem.isEmpty() ? u"no rollback log has anything to undo"_s : problem);
}

bool RollbackCommand::check(const QString &path, std::vector<TRenameTRX> records)
{
    m_result.log = path;
    m_run = std::make_unique<RollbackRun>(environment().fileManager, std::move(records), path);
    m_run->processLog(
        [this](qsizetype done, qsizetype total) {
            console().progress().show("Checking"_L1, done, total);
        },
        &environment().interrupted);
    return !interrupted();
}

std::optional<int> RollbackCommand::confirm(const CommandLine &line)
{
    if (line.has(kYes))
        return {};
    if (!console().canAsk())
        return refuse(
            ExitStatus::kNotConfirmed,
            u"nobody is there to be asked; nothing was undone. Give --yes to undo without "
            "a question"_s);
    const auto total = static_cast<qsizetype>(m_result.records.size());
    const bool yes = console().ask({u"%1 of %2 in %3 can be restored. Undo?"_s.arg(
        QString::number(count(RollbackRun::kRenamedFound)), counted(total, "file"_L1, "files"_L1),
        m_result.log)});
    if (interrupted())
        return refuse(ExitStatus::kInterrupted, kInterruptedBefore);
    if (!yes)
        return refuse(ExitStatus::kNotConfirmed, u"not confirmed; nothing was undone"_s);
    return {};
}

int RollbackCommand::roll(bool reverse)
{
    m_run->performRollBack(
        [this](qsizetype done, qsizetype total) {
            console().progress().show("Rolling back"_L1, done, total);
        },
        environment().interrupted, reverse,
        [this](qsizetype index, const TFileURL &url) {
            takeRestored(static_cast<std::size_t>(index), url);
        });
    m_result.records = m_run->transactions();
    m_result.restoredCount = count(RollbackRun::kRestored);
    m_result.failedCount = count(RollbackRun::kFailed);
    m_result.skippedCount = static_cast<qsizetype>(m_result.records.size()) -
                            m_result.restoredCount - m_result.failedCount;
    printRollback(console(), m_result);
    const bool stopped = std::any_of(m_result.records.begin(), m_result.records.end(), canBeUndone);
    if (stopped && interrupted()) {
        console().message(u"interrupted; the same command goes on where this one stopped"_s);
        return ExitStatus::kInterrupted;
    }
    const bool complete = m_result.failedCount + m_result.skippedCount == 0;
    return complete && m_result.restoredCount > 0 ? ExitStatus::kDone : ExitStatus::kIncomplete;
}

void RollbackCommand::takeRestored(std::size_t record, const TFileURL &url)
{
    // Almost every file gets its very name back, and then shares the record's text.
    const QString &original = m_result.records[record].originalURL.lastPathComponent();
    m_result.restored[record] =
        url.lastPathComponent() == original ? original : url.lastPathComponent();
}

qsizetype RollbackCommand::count(qint64 status) const
{
    const auto &records = m_run->transactions();
    return std::count_if(records.begin(), records.end(), [status](const TRenameTRX &record) {
        return record.renamedExistsWithStatus == status;
    });
}
