// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ArchiveCommand.h"

#include "cli/WholeFile.h"
#include "platform/KeyedUnarchiver.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kText{
    "Shows a keyed archive (a rollback log, a preset) as JSON: the objects of its root array with "
    "their keys, each with its class under \"$class\"."};

} // namespace

Command::Help ArchiveCommand::help() const
{
    return {"archive"_L1, "FILE"_L1, "show a rollback log or preset as JSON"_L1, kText, {}};
}

OptionGroups ArchiveCommand::optionGroups() const
{
    return {Console::commonOptions()};
}

int ArchiveCommand::run(const CommandLine &line)
{
    if (line.words().size() != 1)
        return usageError(u"give one file"_s);
    const QString &path = line.words().first();
    const TResult<QByteArray> content = readWholeFile(path);
    if (!content)
        return refuse(ExitStatus::kUsageError, content.message());
    const TResult<KeyedUnarchiver> archive = KeyedUnarchiver::fromData(content.value());
    if (!archive)
        return refuse(ExitStatus::kUsageError, u"%1: %2"_s.arg(path, archive.message()));
    JsonWriter json;
    printJson(json.json(archive.value().toJson()));
    return ExitStatus::kDone;
}
