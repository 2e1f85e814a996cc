// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/RulesCommand.h"

#include "cli/Recipe.h"
#include "cli/RuleForms.h"
#include "document/TRuleKinds.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kText{"Lists every kind of rule with its settings: type, default and "
                                  "meaning. These are the words that "
                                  "--rule understands."};

QByteArray defaultOf(const SettingInfo &setting, const QVariantMap &defaults)
{
    JsonWriter json;
    RuleForms::writeValue(json, setting, defaults.value(setting.key));
    return json.bytes();
}

void writePossible(JsonWriter &json, const SettingInfo &setting)
{
    const QStringList values = RuleSettings::possibleValues(setting);
    if (values.isEmpty())
        return;
    json.key("values"_L1).beginArray();
    for (const QString &value : values) {
        if (setting.type == SettingType::Integer)
            json.value(value.toLongLong());
        else
            json.value(value);
    }
    json.endArray();
}

void writeKind(JsonWriter &json, const RuleKindInfo &kind, const QVariantMap &defaults)
{
    json.newLine().beginObject().key("kind"_L1).value(QString(kind.kind));
    json.key("meaning"_L1).value(QString(kind.meaning)).key("settings"_L1).beginArray();
    for (const SettingInfo &setting : kind.settings()) {
        json.newLine().beginObject();
        json.key("key"_L1).value(QString(setting.key));
        json.key("type"_L1).value(QString(RuleSettings::typeName(setting.type)));
        json.key("default"_L1).raw(defaultOf(setting, defaults));
        json.key("meaning"_L1).value(QString(setting.meaning));
        writePossible(json, setting);
        json.endObject();
    }
    json.endArray().endObject();
}

void printSetting(Console &console, const SettingInfo &setting, const QByteArray &defaultValue)
{
    console.printLine(u"    %1=%2  (%3) %4"_s.arg(setting.key, QString::fromUtf8(defaultValue),
                                                  RuleSettings::typeName(setting.type),
                                                  setting.meaning));
}

void printKind(Console &console, const RuleKindInfo &kind, const QVariantMap &defaults)
{
    console.printLine(u"%1: %2"_s.arg(kind.kind, kind.meaning));
    for (const SettingInfo &setting : kind.settings())
        printSetting(console, setting, defaultOf(setting, defaults));
    console.printLine(QString());
}

/// No kind of rule, but set in the same way.
void printExtension(Console &console)
{
    const QVariantMap defaults = extensionSettings(TExtensionHandler());
    console.printLine(u"--extension: what becomes of the files' extensions"_s);
    for (const SettingInfo &setting : RuleSettings::extensionSettings()) {
        JsonWriter json;
        json.json(QJsonValue::fromVariant(defaults.value(setting.key)));
        printSetting(console, setting, json.bytes());
    }
}

} // namespace

Command::Help RulesCommand::help() const
{
    return {"rules"_L1, "[--json]"_L1, "list the kinds of rules and their settings"_L1, kText, {}};
}

OptionGroups RulesCommand::optionGroups() const
{
    return {Console::commonOptions()};
}

int RulesCommand::run(const CommandLine &line)
{
    if (!line.words().isEmpty())
        return usageError(
            u"rules takes no arguments, but was given %1"_s.arg(line.words().first()));
    JsonWriter json;
    json.beginArray();
    for (const RuleKindInfo &kind : RuleSettings::kinds()) {
        const QVariantMap defaults = TRuleKinds::ruleForIdentifier(kind.kind)->properties();
        if (console().isJson())
            writeKind(json, kind, defaults);
        else
            printKind(console(), kind, defaults);
    }
    if (console().isJson())
        printJson(json.newLine().endArray());
    else
        printExtension(console());
    return ExitStatus::kDone;
}
