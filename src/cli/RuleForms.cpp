// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/RuleForms.h"

#include "cli/ShellWords.h"
#include "commonprocs/ByteNames.h"
#include "document/TRuleKinds.h"
#include "platform/TStringTable.h"
#include "rules/TRegExRule.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kKind{"kind"};
constexpr QLatin1StringView kMatch{"match"};
constexpr QLatin1StringView kReplace{"replace"};

struct ChangedSetting
{
    SettingInfo setting;
    QVariant value;
};

QByteArray jsonOf(const SettingInfo &setting, const QVariant &value)
{
    JsonWriter json;
    RuleForms::writeValue(json, setting, value);
    return json.bytes();
}

/// The settings that a new rule of the kind does not have already.
std::vector<ChangedSetting> changedSettings(const TRuleModel &rule, const RuleKindInfo &kind)
{
    const QVariantMap properties = rule.properties();
    const QVariantMap defaults = rule.newInstance()->properties();
    std::vector<ChangedSetting> changed;
    for (const SettingInfo &setting : kind.settings()) {
        const QVariant value = properties.value(setting.key);
        const bool differs = jsonOf(setting, value) != jsonOf(setting, defaults.value(setting.key));
        if (differs && value.isValid() && !setting.follows)
            changed.push_back({setting, value});
    }
    return changed;
}

TRegExPairs pairsOf(const QVariant &value)
{
    const TRegExPairsPtr pairs = value.value<TRegExPairsPtr>();
    return pairs ? *pairs : TRegExPairs();
}

void writePairs(JsonWriter &json, const TRegExPairs &pairs)
{
    json.beginArray();
    for (const auto &pair : pairs) {
        json.beginObject();
        json.key(kMatch).value(pair->match).key(kReplace).value(pair->replace);
        json.endObject();
    }
    json.endArray();
}

void writeTable(JsonWriter &json, const TStringTablePtr &table)
{
    if (!table) {
        json.null();
        return;
    }
    json.beginArray();
    for (const QStringList &row : *table) {
        json.beginArray();
        for (const QString &cell : row)
            json.value(cell);
        json.endArray();
    }
    json.endArray();
}

/// Null for a text with characters that no line can show as they are.
QString word(QLatin1StringView key, const QString &value)
{
    if (ByteNames::forDisplay(value) != value)
        return {};
    return u' ' + key + u'=' + shellQuoted(value);
}

/// The setting as words; null when only JSON can say it.
QString settingWords(const ChangedSetting &changed)
{
    const auto &[setting, value] = changed;
    if (setting.type == SettingType::Table)
        return {};
    if (setting.type != SettingType::Pairs)
        return word(setting.key, value.toString());
    const TRegExPairs pairs = pairsOf(value);
    if (pairs.size() != 1)
        return {};
    const QString match = word(kMatch, pairs.front()->match);
    const QString replace = word(kReplace, pairs.front()->replace);
    return match.isNull() || replace.isNull() ? QString() : match + replace;
}

} // namespace

namespace RuleForms {

void writeValue(JsonWriter &json, const SettingInfo &setting, const QVariant &value)
{
    if (!value.isValid()) {
        json.null();
        return;
    }
    switch (setting.type) {
    case SettingType::Integer:
        json.value(value.toLongLong());
        break;
    case SettingType::Boolean:
        json.value(value.toBool());
        break;
    case SettingType::Text:
        json.value(value.toString());
        break;
    case SettingType::Pairs:
        writePairs(json, pairsOf(value));
        break;
    case SettingType::Table:
        writeTable(json, value.value<TStringTablePtr>());
        break;
    }
}

void writeRule(JsonWriter &json, const TRuleModel &rule)
{
    const QString identifier = TRuleKinds::identifierForRule(rule);
    json.beginObject().key(kKind).value(identifier);
    for (const auto &[setting, value] : changedSettings(rule, *RuleSettings::kind(identifier))) {
        json.key(setting.key);
        writeValue(json, setting, value);
    }
    json.endObject();
}

void writeRules(JsonWriter &json, const TRuleList &rules)
{
    json.beginObject().key("rules"_L1).beginArray();
    for (const TRulePtr &rule : rules) {
        json.newLine();
        writeRule(json, *rule);
    }
    json.newLine().endArray().endObject();
}

QString ruleText(const TRuleModel &rule)
{
    const QString identifier = TRuleKinds::identifierForRule(rule);
    QString text = identifier;
    for (const ChangedSetting &changed : changedSettings(rule, *RuleSettings::kind(identifier))) {
        const QString words = settingWords(changed);
        if (words.isNull()) {
            JsonWriter json;
            writeRule(json, rule);
            return QString::fromUtf8(json.bytes());
        }
        text += words;
    }
    return text;
}

} // namespace RuleForms
