// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"
#include "settings/PresetsManager.h"

#include <optional>

/// "presets": saved rule lists, shown, saved, deleted, copied out and in.
class PresetsCommand : public Command
{
public:
    using Command::Command;

    Help help() const override;
    OptionGroups optionGroups() const override;

protected:
    int run(const CommandLine &line) override;

private:
    struct Action
    {
        QLatin1StringView name;
        qsizetype arguments;
        int (PresetsCommand::*run)(const CommandLine &line);
    };
    static const Action *findAction(const QString &name);

    int list(const CommandLine &line);
    int show(const CommandLine &line);
    int save(const CommandLine &line);
    int remove(const CommandLine &line);
    int exportPreset(const CommandLine &line);
    int importPreset(const CommandLine &line);
    int saveAs(const QString &name, const TRuleList &rules);
    int finishFile(const QString &path);
    int refuseNamed(const QString &name, const QString &problem);

    std::optional<PresetsManager> m_presets; ///< there once the verb runs
};
