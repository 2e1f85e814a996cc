// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/RecipeReader.h"

#include "cli/SettingValue.h"
#include "cli/WholeFile.h"

#include <QJsonArray>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kRule{"rule"};
constexpr QLatin1StringView kPreset{"preset"};
constexpr QLatin1StringView kRecipe{"recipe"};
constexpr QLatin1StringView kExtension{"extension"};
constexpr QLatin1StringView kCompliance{"compliance"};
constexpr QLatin1StringView kLeadingPeriod{"leading-period"};
constexpr QLatin1StringView kDuplicatesCritical{"duplicates-critical"};
constexpr QLatin1StringView kKeepUnchanged{"keep-unchanged"};
constexpr QLatin1StringView kRules{"rules"};
constexpr QLatin1StringView kOptions{"options"};

constexpr std::array kRecipeOptions{
    OptionInfo{
        kRule, "RULE"_L1,
        "a kind and its settings, such as 'Counter startValue=1 padding=3', or the same as a "
        "JSON object; the verb rules lists them all"_L1},
    OptionInfo{kPreset, "NAME_OR_FILE"_L1,
               "the rules of a saved preset, or of a .renamesetting file"_L1},
    OptionInfo{kRecipe, "FILE"_L1,
               "a JSON file: {\"rules\":[...],\"extension\":{...},\"options\":{...}}"_L1},
    OptionInfo{kExtension, "SETTINGS"_L1,
               "what becomes of extensions, such as 'handlingMethod=2 map=htm:html,jpeg:jpg'"_L1},
    OptionInfo{kCompliance, ""_L1,
               "keep \":\" and \"/\" in what rules give (as a rule they become \"_\")"_L1},
    OptionInfo{kLeadingPeriod, ""_L1,
               "record that names may start with a period; names are the same without it"_L1},
    OptionInfo{kDuplicatesCritical, ""_L1,
               "a name that two files would get is a critical problem"_L1},
    OptionInfo{kKeepUnchanged, ""_L1, "leave files alone whose name would not change"_L1},
};

/// Options of a batch under the names that they have in JSON.
constexpr std::array kOptionSettings{
    SettingInfo{"compliance"_L1, SettingType::Boolean, {}},
    SettingInfo{"allowLeadingPeriod"_L1, SettingType::Boolean, {}},
    SettingInfo{"duplicatesAreCritical"_L1, SettingType::Boolean, {}},
    SettingInfo{"keepUnchanged"_L1, SettingType::Boolean, {}},
};

void setOption(Recipe &recipe, std::size_t index, bool value)
{
    switch (index) {
    case 0:
        recipe.options.compliance = value ? 1 : 0;
        break;
    case 1:
        recipe.options.allowLeadingPeriod = value ? 1 : 0;
        break;
    case 2:
        recipe.duplicatesAreCritical = value;
        break;
    default:
        recipe.options.keepUnchanged = value;
    }
}

bool isPresetFile(const QString &nameOrFile)
{
    return nameOrFile.contains(u'/') || nameOrFile.endsWith(u'.' + PresetsManager::kExtension);
}

} // namespace

OptionGroup RecipeReader::options()
{
    return {"Recipe (rules apply in the order in which they stand)"_L1, kRecipeOptions};
}

QLatin1StringView RecipeReader::firstOption(const CommandLine &line)
{
    for (const OptionInfo &option : kRecipeOptions)
        if (line.has(option.name))
            return option.name;
    return {};
}

RecipeReader::RecipeReader(const PresetsManager &presets)
    : m_presets(presets)
{
}

TResult<Recipe> RecipeReader::read(const CommandLine &line)
{
    QString problem = understand(line);
    if (problem.isEmpty())
        problem = readFiles();
    for (std::size_t i = 0; i < m_steps.size() && problem.isEmpty(); ++i)
        problem = build(m_steps[i]);
    if (!problem.isEmpty())
        return TResult<Recipe>::failure(problem);
    static constexpr std::array kFlags{kCompliance, kLeadingPeriod, kDuplicatesCritical,
                                       kKeepUnchanged};
    for (std::size_t i = 0; i < kFlags.size(); ++i) {
        if (!line.has(kFlags[i]))
            continue;
        setOption(m_recipe, i, true);
        m_recipe.hasOptions = true;
    }
    return std::move(m_recipe);
}

QString RecipeReader::understand(const CommandLine &line)
{
    for (const CommandLine::Given &given : line.options()) {
        QString problem;
        if (given.name == kRule) {
            TResult<WrittenRule> rule = RuleWords::rule(given.value);
            if (rule)
                m_steps.emplace_back(std::move(rule).value());
            else
                problem = rule.message();
        } else if (given.name == kExtension) {
            TResult<WrittenExtension> extension = RuleWords::extension(given.value);
            if (extension)
                m_steps.emplace_back(std::move(extension).value());
            else
                problem = extension.message();
        } else if (given.name == kPreset) {
            m_steps.emplace_back(NamedPreset{given.value});
        } else if (given.name == kRecipe) {
            m_steps.emplace_back(RecipeFile{given.value});
        }
        if (!problem.isEmpty())
            return u"--%1: %2"_s.arg(given.name, problem);
    }
    return {};
}

QString RecipeReader::readFiles()
{
    std::vector<Step> steps;
    for (Step &step : m_steps) {
        if (!std::holds_alternative<RecipeFile>(step)) {
            steps.push_back(std::move(step));
            continue;
        }
        const QString path = std::get<RecipeFile>(step).path;
        if (const QString problem = understandFile(path, steps); !problem.isEmpty())
            return u"--recipe %1: %2"_s.arg(path, problem);
    }
    m_steps = std::move(steps);
    return {};
}

QString RecipeReader::understandFile(const QString &path, std::vector<Step> &steps)
{
    const TResult<QByteArray> content = readWholeFile(path);
    if (!content)
        return content.message();
    const TResult<QJsonObject> object = RuleWords::jsonObject(content.value());
    if (!object)
        return object.message();
    for (const QString &key : object.value().keys()) {
        if (key != kRules && key != kExtension && key != kOptions)
            return SettingValue::unknownWord(u"key"_s, key, {kRules, kExtension, kOptions});
    }
    const QJsonValue rules = object.value()[kRules];
    if (!rules.isArray() && !rules.isUndefined())
        return u"\"rules\" wants an array of rules, not %1"_s.arg(SettingValue::shown(rules));
    const QJsonArray array = rules.toArray();
    for (const QJsonValue element : array) {
        if (!element.isObject())
            return u"a rule is an object such as {\"kind\":\"Text\"}, not %1"_s.arg(
                SettingValue::shown(element));
        TResult<WrittenRule> rule = RuleWords::rule(element.toObject());
        if (!rule)
            return rule.message();
        steps.emplace_back(std::move(rule).value());
    }
    const QJsonValue extension = object.value()[kExtension];
    if (!extension.isObject() && !extension.isUndefined())
        return u"\"extension\" wants an object, not %1"_s.arg(SettingValue::shown(extension));
    if (extension.isObject()) {
        TResult<WrittenExtension> written = RuleWords::extension(extension.toObject());
        if (!written)
            return "extension: "_L1 + written.message();
        steps.emplace_back(std::move(written).value());
    }
    return understandOptions(object.value()[kOptions]);
}

QString RecipeReader::understandOptions(const QJsonValue &options)
{
    if (options.isUndefined())
        return {};
    if (!options.isObject())
        return u"\"options\" wants an object, not %1"_s.arg(SettingValue::shown(options));
    const QJsonObject object = options.toObject();
    for (auto it = object.begin(); it != object.end(); ++it) {
        const auto found = std::find_if(kOptionSettings.begin(), kOptionSettings.end(),
                                        [&it](const SettingInfo &s) { return s.key == it.key(); });
        if (found == kOptionSettings.end()) {
            QStringList possible;
            for (const SettingInfo &setting : kOptionSettings)
                possible.append(setting.key);
            return SettingValue::unknownWord(u"option"_s, it.key(), possible);
        }
        const TResult<QVariant> value = SettingValue::fromJson(*found, QJsonValue(it.value()));
        if (!value)
            return value.message();
        m_recipe.hasOptions = true;
        setOption(m_recipe, static_cast<std::size_t>(found - kOptionSettings.begin()),
                  value.value().toBool());
    }
    return {};
}

QString RecipeReader::build(const Step &step)
{
    if (const auto *written = std::get_if<WrittenRule>(&step)) {
        TResult<TRulePtr> rule = makeRule(*written);
        if (!rule)
            return rule.message();
        m_recipe.rules.push_back(std::move(rule).value());
        return {};
    }
    if (const auto *extension = std::get_if<WrittenExtension>(&step)) {
        applyExtension(*m_recipe.extensionHandler, *extension);
        m_recipe.hasExtensionSettings = true;
        return {};
    }
    return addPreset(std::get<NamedPreset>(step).nameOrFile);
}

QString RecipeReader::addPreset(const QString &nameOrFile)
{
    const TResult<TRuleList> rules = readNamedPreset(m_presets, nameOrFile);
    if (!rules)
        return u"--preset %1: %2"_s.arg(nameOrFile, rules.message());
    m_recipe.rules.insert(m_recipe.rules.end(), rules.value().begin(), rules.value().end());
    return {};
}

TResult<TRuleList> readNamedPreset(const PresetsManager &presets, const QString &nameOrFile)
{
    if (isPresetFile(nameOrFile)) {
        const QString problem = reasonNotToRead(nameOrFile);
        return problem.isEmpty() ? presets.readPreset(nameOrFile)
                                 : TResult<TRuleList>::failure(problem);
    }
    const TResult<PresetsManager::Entry> preset = findPreset(presets, nameOrFile);
    if (!preset)
        return TResult<TRuleList>::failure(
            preset.message() + u". Give the path of a .renamesetting file to use that"_s);
    return presets.readPreset(preset.value().path);
}

TResult<PresetsManager::Entry> findPreset(const PresetsManager &presets, const QString &name)
{
    QStringList names;
    for (const PresetsManager::Entry &entry : presets.presets()) {
        if (entry.name == name)
            return entry;
        names.append(entry.name);
    }
    const QString possible =
        names.isEmpty() ? u"none is saved"_s : "possible: "_L1 + names.join(u", "_s);
    return TResult<PresetsManager::Entry>::failure(u"there is no such preset; %1"_s.arg(possible));
}
