// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/CommandLine.h"
#include "cli/Recipe.h"
#include "settings/PresetsManager.h"

#include <variant>

/// Makes the recipe that a command line describes. Everything written on the line is understood
/// before recipe files are read, and those before presets and tables, so that a slip of the pen is
/// found before any work.
class RecipeReader
{
public:
    /// The options that describe a recipe.
    static OptionGroup options();

    /// The name of the first such option that was given; null when there is none.
    static QLatin1StringView firstOption(const CommandLine &line);

    /// The presets are not owned.
    explicit RecipeReader(const PresetsManager &presets);

    TResult<Recipe> read(const CommandLine &line);

private:
    struct NamedPreset
    {
        QString nameOrFile;
    };
    struct RecipeFile
    {
        QString path;
    };
    using Step = std::variant<WrittenRule, WrittenExtension, NamedPreset, RecipeFile>;

    QString understand(const CommandLine &line);
    QString understandFile(const QString &path, std::vector<Step> &steps);
    QString understandOptions(const QJsonValue &options);
    QString readFiles();
    QString build(const Step &step);
    QString addPreset(const QString &nameOrFile);

    const PresetsManager &m_presets;
    std::vector<Step> m_steps;
    Recipe m_recipe;
};

/// The rules of a preset, by its name or by the path of its file; the failure lists the names.
TResult<TRuleList> readNamedPreset(const PresetsManager &presets, const QString &nameOrFile);
/// The preset of that name; the failure lists the names.
TResult<PresetsManager::Entry> findPreset(const PresetsManager &presets, const QString &name);
