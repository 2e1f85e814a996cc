// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/PresetsCommand.h"

#include "cli/RecipeReader.h"
#include "cli/RuleForms.h"
#include "cli/SettingValue.h"
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
    const Action *action = findAction(name);
    if (action == nullptr)
        return usageError(SettingValue::unknownWord(
            u"action"_s, name,
            {u"list"_s, u"show"_s, u"save"_s, u"delete"_s, u"export"_s, u"import"_s}));
    if (line.words().size() != action->arguments + 1)
        return usageError(u"presets %1 takes %2 arguments, but was given %3"_s.arg(action->name)
                              .arg(action->arguments)
                              .arg(line.words().size() - 1));
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
    const TResult<Recipe> recipe = RecipeReader(*m_presets).read(line);
    if (!recipe)
        return usageError(recipe.message());
    if (recipe.value().rules.empty())
        return usageError(
            u"a preset needs rules: give at least one --rule, --preset or --recipe"_s);
    if (recipe.value().hasExtensionSettings)
        console().message(u"extension settings are no part of a preset and were left out"_s);
    return saveAs(line.words()[1], recipe.value().rules);
}

int PresetsCommand::saveAs(const QString &name, const TRuleList &rules)
{
    const TResult<QString> result = m_presets->savePreset(name, rules);
    if (!result)
        return refuseNamed(name, result.message());
    if (console().isJson()) {
        JsonWriter json;
        printJson(json.beginObject().key("path"_L1).value(result.value()).endObject());
    } else {
        console().printLine(result.value());
    }
    return ExitStatus::kDone;
}

int PresetsCommand::remove(const CommandLine &line)
{
    const TResult<bool> deleted = m_presets->deletePreset(line.words()[1]);
    return deleted ? ExitStatus::kDone : refuseNamed(line.words()[1], deleted.message());
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
    return written ? ExitStatus::kDone : refuse(ExitStatus::kUsageError, written.message());
}

int PresetsCommand::importPreset(const CommandLine &line)
{
    const QString &path = line.words()[1];
    const TResult<TRuleList> rules = m_presets->readPreset(path);
    if (!rules)
        return refuseNamed(path, rules.message());
    return saveAs(nameOfFile(path), rules.value());
}

int PresetsCommand::refuseNamed(const QString &name, const QString &problem)
{
    return refuse(ExitStatus::kUsageError, u"%1: %2"_s.arg(name, problem));
}
