// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/LogsFolder.h"

#include "cli/CliEnvironment.h"
#include "cli/Console.h"
#include "cli/ShellWords.h"
#include "commonprocs/ByteNames.h"
#include "commonprocs/URLListProcessing.h"
#include "commonprocs/easyfile.h"
#include "rollback/RecoveryProgress.h"

#include <cerrno>
#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr QLatin1StringView kApplication{"Tavrin"};
constexpr QLatin1StringView kLogs{"Logs"};
constexpr auto kPatience = 1s;
constexpr auto kStep = 100ms;

QString storyOf(const RecoveredRun &run)
{
    const QString files = counted(run.files, "file"_L1, "files"_L1);
    if (run.rollbackLog.isEmpty())
        return u"a run over %1 was interrupted before it renamed anything"_s.arg(files);
    QString story =
        u"a run over %1 was interrupted after renaming %2; to undo: tavrin-cli "
        "rollback %3"_s.arg(files, QString::number(run.renamed), shellQuoted(run.rollbackLog));
    if (run.unknown > 0)
        story += u". What became of %1 of them is not known"_s.arg(run.unknown);
    return story;
}

} // namespace

namespace LogsFolder {

QString path()
{
    return appSupportDirURL().path() + u'/' + kApplication + u'/' + kLogs;
}

QString made()
{
    const TFileURL folder = getSandboxedAppSupportFolder(kApplication, kLogs);
    return folder.isValid() ? folder.path() : QString();
}

QString problem(FileManager &disk)
{
    const int folder = disk.openFolder(ByteNames::toBytes(path()));
    if (folder >= 0)
        disk.closeFolder(folder);
    if (folder >= 0 || folder == -ENOENT)
        return {};
    const QString reason =
        folder == -EACCES ? u"you are not allowed to read it"_s : textForErrno(-folder);
    return u"the folder of rollback logs, %1, cannot be listed: %2"_s.arg(path(), reason);
}

std::optional<std::vector<RecoveredRun>> recover(CliEnvironment &environment, Console &console)
{
    std::vector<RecoveredRun> runs;
    const auto recovery = std::make_shared<RecoveryProgress>();
    recovery->start(path(), environment.fileManager, environment.clock,
                    [&runs](std::vector<RecoveredRun> found) { runs = std::move(found); });
    if (!recovery->waitFor(kPatience))
        console.message(u"waiting for the folder \"%1\" of an interrupted run, which does not "
                        "answer"_s.arg(recovery->folderAtHand()));
    while (!recovery->waitFor(kStep)) {
        if (!environment.interrupted)
            continue;
        recovery->abandon();
        return {};
    }
    for (const RecoveredRun &run : runs)
        console.message(run.problem.isEmpty() ? storyOf(run) : run.problem);
    return runs;
}

} // namespace LogsFolder
