// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/PresetsCommand.h"

#include "cli/RecipeReader.h"
#include "cli/RuleForms.h"
#include "cli/SettingValue.h"
#include "cli/ShellWords.h"
#include "cli/WholeFile.h"
#include "document/TRuleKinds.h"

#include <QBuffer>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kText{
    "Presets are saved lists of rules; extension settings and options are no part of them. Those "
    "of "
    "the program can be hidden by one of the same name, but not deleted. show prints rules as "
    "--rule "
    "takes them, or with --json as --recipe reads them; export and import copy preset files."};

constexpr QLatin1StringView kExamples{
    "tavrin-cli presets save Trip --rule 'Text theText=\"Trip \"' --rule Counter\n"
    "tavrin-cli presets show Trip --json > trip.json\n"
    "tavrin-cli presets export Trip Trip.renamesetting"};

QString nameOfFile(const QString &path)
{
    return removeExtensionFromFilename(path.sliced(path.lastIndexOf(u'/') + 1));
}

} // namespace

Command::Help PresetsCommand::help() const
{
    return {"presets"_L1,
            "list [--json]\nshow NAME [--json]\nsave NAME [recipe]\ndelete NAME\nexport NAME "
            "FILE\nimport FILE"_L1,
            "list, show, save, delete, export or import presets"_L1, kText, kExamples};
}

OptionGroups PresetsCommand::optionGroups() const
{
    return {RecipeReader::options(), Console::commonOptions()};
}

const PresetsCommand::Action *PresetsCommand::findAction(const QString &name)
{
    static constexpr std::array kActions{
        Action{"list"_L1, 0, &PresetsCommand::list},
        Action{"show"_L1, 1, &PresetsCommand::show},
        Action{"save"_L1, 1, &PresetsCommand::save},
        Action{"delete"_L1, 1, &PresetsCommand::remove},
        Action{"export"_L1, 2, &PresetsCommand::exportPreset},
        Action{"import"_L1, 1, &PresetsCommand::importPreset},
    };
    const auto found = std::find_if(kActions.begin(), kActions.end(),
                                    [&name](const Action &action) { return action.name == name; });
    return found == kActions.end() ? nullptr : &*found;
}

int PresetsCommand::run(const CommandLine &line)
{
    const QString name = line.words().value(0);
    const QStringList names{u"list"_s, u"show"_s, u"save"_s, u"delete"_s, u"export"_s, u"import"_s};
    if (line.words().isEmpty())
        return usageError(u"an action is needed; possible: %1"_s.arg(names.join(u", "_s)));
    const Action *action = findAction(name);
    if (action == nullptr)
        return usageError(SettingValue::unknownWord(u"action"_s, name, names));
    if (line.words().size() != action->arguments + 1)
        return usageError(u"presets %1 takes %2, but was given %3"_s.arg(
            action->name, counted(action->arguments, "argument"_L1, "arguments"_L1),
            QString::number(line.words().size() - 1)));
    const QLatin1StringView recipeOption = RecipeReader::firstOption(line);
    if (!recipeOption.isEmpty() && action->run != &PresetsCommand::save)
        return usageError(u"presets %1 takes no recipe; --%2 goes with presets save"_s.arg(
            action->name, recipeOption));
    m_presets = PresetsManager::standard();
    return (this->*action->run)(line);
}

int PresetsCommand::list(const CommandLine & /*line*/)
{
    JsonWriter json;
    json.beginArray();
    for (const PresetsManager::Entry &entry : m_presets->presets()) {
        json.newLine().beginObject().key("name"_L1).value(entry.name);
        json.key("shipped"_L1).value(entry.shipped).key("path"_L1).value(entry.path).endObject();
        if (!console().isJson())
            console().printLine(entry.shipped ? u"%1  (shipped)"_s.arg(entry.name) : entry.name);
    }
    if (console().isJson())
        printJson(json.newLine().endArray());
    return ExitStatus::kDone;
}

int PresetsCommand::show(const CommandLine &line)
{
    const TResult<TRuleList> rules = readNamedPreset(*m_presets, line.words()[1]);
    if (!rules)
        return refuseNamed(line.words()[1], rules.message());
    if (console().isJson()) {
        JsonWriter json;
        RuleForms::writeRules(json, rules.value());
        printJson(json);
        return ExitStatus::kDone;
    }
    for (const TRulePtr &rule : rules.value())
        console().printLine(RuleForms::ruleText(*rule));
    return ExitStatus::kDone;
}

int PresetsCommand::save(const CommandLine &line)
{
    const QString ending = u'.' + PresetsManager::kExtension;
    if (const QString &name = line.words()[1]; name.endsWith(ending))
        return usageError(
            u"a preset's name has no ending; %1 is put behind it in the name of its file. Save it "
            "as %2"_s.arg(ending, shellQuoted(name.chopped(ending.size()))));
    const TResult<Recipe> recipe = RecipeReader(*m_presets).read(line);
    if (!recipe)
        return usageError(recipe.message());
    if (recipe.value().rules.empty())
        return usageError(
            u"a preset needs rules: give at least one --rule, --preset or --recipe"_s);
    if (recipe.value().hasExtensionSettings)
        console().message(u"extension settings are no part of a preset and were left out"_s);
    if (recipe.value().hasOptions)
        console().message(u"options of the recipe are no part of a preset and were left out"_s);
    return saveAs(line.words()[1], recipe.value().rules);
}

int PresetsCommand::saveAs(const QString &name, const TRuleList &rules)
{
    const TResult<QString> result = m_presets->savePreset(name, rules);
    if (!result)
        return refuseNamed(name, result.message());
    if (!console().isJson())
        console().printLine(result.value());
    return finishFile(result.value());
}

/// Ends an action on a preset's file, which the document names.
int PresetsCommand::finishFile(const QString &path)
{
    JsonWriter json;
    if (console().isJson())
        printJson(json.beginObject().key("path"_L1).value(path).endObject());
    return ExitStatus::kDone;
}

int PresetsCommand::remove(const CommandLine &line)
{
    const QString &name = line.words()[1];
    const TResult<PresetsManager::Entry> preset = findPreset(*m_presets, name);
    if (!preset)
        return refuseNamed(name, preset.message());
    const TResult<bool> deleted = m_presets->deletePreset(name);
    if (deleted)
        return finishFile(preset.value().path);
    return preset.value().shipped ? refuse(ExitStatus::kUsageError, deleted.message())
                                  : refuseNamed(name, deleted.message());
}

int PresetsCommand::exportPreset(const CommandLine &line)
{
    const TResult<TRuleList> rules = readNamedPreset(*m_presets, line.words()[1]);
    if (!rules)
        return refuseNamed(line.words()[1], rules.message());
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    const QString &path = line.words()[2];
    if (!TRuleKinds::archiveRules(rules.value(), buffer))
        return refuse(ExitStatus::kUsageError, u"%1 cannot be written"_s.arg(path));
    const TResult<bool> written = writeWholeFile(path, buffer.data());
    return written ? finishFile(path) : refuse(ExitStatus::kUsageError, written.message());
}

int PresetsCommand::importPreset(const CommandLine &line)
{
    const QString &path = line.words()[1];
    if (const QString problem = reasonNotToRead(path); !problem.isEmpty())
        return refuseNamed(path, problem);
    const TResult<TRuleList> rules = m_presets->readPreset(path);
    if (!rules)
        return refuseNamed(path, rules.message());
    return saveAs(nameOfFile(path), rules.value());
}

int PresetsCommand::refuseNamed(const QString &name, const QString &problem)
{
    return refuse(ExitStatus::kUsageError, u"%1: %2"_s.arg(name, problem));
}
