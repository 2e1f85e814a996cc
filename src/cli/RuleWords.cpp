// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/RuleWords.h"

#include "cli/JsonKeys.h"
#include "cli/SettingValue.h"
#include "cli/ShellWords.h"
#include "commonprocs/ByteNames.h"

#include <QJsonDocument>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kKind{"kind"};
constexpr QLatin1StringView kMatch{"match"};
constexpr QLatin1StringView kReplace{"replace"};
constexpr QLatin1StringView kFile{"file"};
constexpr QLatin1StringView kMap{"map"};
constexpr QLatin1StringView kOriginal{"original"};
constexpr QLatin1StringView kTarget{"target"};
constexpr QLatin1StringView kRegArray{"regArray"};
constexpr QLatin1StringView kRows{"theRows"};
constexpr QLatin1StringView kMapArray{"mapArray"};

TResult<QString> shortHandText(const QString &, const QString &text)
{
    return text;
}

TResult<QString> shortHandText(const QString &key, const QJsonValue &json)
{
    if (json.isString())
        return json.toString();
    return TResult<QString>::failure(
        u"%1 wants a text, not %2"_s.arg(key, SettingValue::shown(json)));
}

TResult<QVariant> convert(const SettingInfo &setting, const QString &word)
{
    return SettingValue::fromWord(setting, word);
}

TResult<QVariant> convert(const SettingInfo &setting, const QJsonValue &json)
{
    return SettingValue::fromJson(setting, json);
}

/// Collects the settings of one rule, or of the extension handler. Short hands are keys that stand
/// for a longer setting; their texts are kept apart.
class SettingsCollector
{
public:
    SettingsCollector(std::vector<SettingInfo> settings, QStringList shortHandKeys)
        : m_settings(std::move(settings))
        , m_shortHands(std::move(shortHandKeys))
    {
    }

    /// Empty, or what is wrong. given is a text or a JSON value.
    QString take(const QString &key, const auto &given)
    {
        if (values.contains(key) || shortHands.contains(key))
            return u"%1 is given twice"_s.arg(key);
        if (m_shortHands.contains(key)) {
            const TResult<QString> text = shortHandText(key, given);
            if (text)
                shortHands.insert(key, text.value());
            return text.message();
        }
        const auto setting =
            std::find_if(m_settings.begin(), m_settings.end(),
                         [&key](const SettingInfo &known) { return known.key == key; });
        if (setting == m_settings.end())
            return SettingValue::unknownWord(u"setting"_s, key, possibleKeys());
        TResult<QVariant> value = convert(*setting, given);
        if (value)
            values.insert(key, value.value());
        return value.message();
    }

    QVariantMap values;
    QMap<QString, QString> shortHands;

private:
    QStringList possibleKeys() const
    {
        QStringList keys;
        for (const SettingInfo &setting : m_settings)
            keys.append(setting.key);
        return keys + m_shortHands;
    }

    std::vector<SettingInfo> m_settings;
    QStringList m_shortHands;
};

QString takeWords(SettingsCollector &collector, const QStringList &words)
{
    for (const QString &word : words) {
        const qsizetype equals = word.indexOf(u'=');
        if (equals < 1)
            return u"\"%1\" is no setting; settings are written key=value"_s.arg(word);
        const QString problem = collector.take(word.left(equals), word.sliced(equals + 1));
        if (!problem.isEmpty())
            return problem;
    }
    return {};
}

QString takeObject(SettingsCollector &collector, const QJsonObject &object)
{
    for (auto it = object.begin(); it != object.end(); ++it) {
        const QString problem = collector.take(it.key(), QJsonValue(it.value()));
        if (!problem.isEmpty())
            return problem;
    }
    return {};
}

SettingsCollector collectorFor(const RuleKindInfo &kind)
{
    QStringList shortHands;
    if (kind.setting(kRegArray) != nullptr)
        shortHands = {kMatch, kReplace};
    else if (kind.setting(kRows) != nullptr)
        shortHands = {kFile};
    return {kind.settings(), shortHands};
}

/// Turns match and replace into the one pair that they stand for; what is wrong, if anything.
QString expandPair(SettingsCollector &collector)
{
    const auto &texts = collector.shortHands;
    if (!texts.contains(kMatch) && !texts.contains(kReplace))
        return {};
    if (!texts.contains(kMatch) || !texts.contains(kReplace))
        return u"match and replace belong together; replace=\"\" removes what matches"_s;
    if (collector.values.contains(kRegArray))
        return u"match and replace stand for regArray; give one or the other"_s;
    const QVariantMap pair{{kMatch, texts[kMatch]}, {kReplace, texts[kReplace]}};
    collector.values.insert(kRegArray, QVariantList{pair});
    return {};
}

QString expandMap(SettingsCollector &collector)
{
    if (!collector.shortHands.contains(kMap))
        return {};
    if (collector.values.contains(kMapArray))
        return u"map stands for mapArray; give one or the other"_s;
    QVariantList rows;
    const QStringList entries = collector.shortHands[kMap].split(u',');
    for (const QString &entry : entries) {
        const qsizetype colon = entry.indexOf(u':');
        if (colon < 0)
            return u"map wants pairs such as htm:html,jpeg:jpg, not \"%1\""_s.arg(entry);
        rows.append(
            QVariantMap{{kOriginal, entry.left(colon)}, {kTarget, entry.sliced(colon + 1)}});
    }
    collector.values.insert(kMapArray, rows);
    return {};
}

TResult<WrittenRule> finishRule(const RuleKindInfo &kind, SettingsCollector &collector,
                                QString problem)
{
    if (problem.isEmpty())
        problem = expandPair(collector);
    const QString file = collector.shortHands.value(kFile);
    if (problem.isEmpty() && !file.isNull() && collector.values.contains(kRows))
        problem = u"file and theRows are two ways to give the table; give one or the other"_s;
    if (!problem.isEmpty())
        return TResult<WrittenRule>::failure(kind.kind + ": "_L1 + problem);
    return WrittenRule{&kind, std::move(collector.values), file};
}

TResult<WrittenRule> unknownKind(const QString &kind)
{
    return TResult<WrittenRule>::failure(
        SettingValue::unknownWord(u"kind of rule"_s, kind, RuleSettings::kindNames()));
}

SettingsCollector extensionCollector()
{
    const auto settings = RuleSettings::extensionSettings();
    return {{settings.begin(), settings.end()}, {kMap}};
}

TResult<WrittenExtension> finishExtension(SettingsCollector &collector, QString problem)
{
    if (problem.isEmpty())
        problem = expandMap(collector);
    if (!problem.isEmpty())
        return TResult<WrittenExtension>::failure(problem);
    return std::move(collector.values);
}

bool isJson(const QString &text)
{
    return text.trimmed().startsWith(u'{');
}

} // namespace

namespace RuleWords {

TResult<QJsonObject> jsonObject(const QByteArray &json)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError) {
        const auto line = json.left(error.offset).count('\n') + 1;
        return TResult<QJsonObject>::failure(u"not valid JSON at line %1, byte %2: %3"_s.arg(
            QString::number(line), QString::number(error.offset), error.errorString()));
    }
    if (!document.isObject())
        return TResult<QJsonObject>::failure(u"the JSON text must be an object: {...}"_s);
    if (const QString key = repeatedJsonKey(json); !key.isNull())
        return TResult<QJsonObject>::failure(u"%1 is given twice"_s.arg(key));
    return document.object();
}

TResult<WrittenRule> rule(const QString &text)
{
    if (isJson(text)) {
        const TResult<QJsonObject> object = jsonObject(ByteNames::toBytes(text));
        return object ? rule(object.value()) : TResult<WrittenRule>::failure(object.message());
    }
    const TResult<QStringList> words = splitShellWords(text);
    if (!words)
        return TResult<WrittenRule>::failure(words.message());
    if (words.value().isEmpty())
        return TResult<WrittenRule>::failure(u"the rule is empty; it starts with one of: %1"_s.arg(
            RuleSettings::kindNames().join(u", "_s)));
    const RuleKindInfo *kind = RuleSettings::kind(words.value().first());
    if (kind == nullptr)
        return unknownKind(words.value().first());
    SettingsCollector collector = collectorFor(*kind);
    return finishRule(*kind, collector, takeWords(collector, words.value().sliced(1)));
}

TResult<WrittenRule> rule(const QJsonObject &object)
{
    const QJsonValue given = object[kKind];
    if (!given.isString())
        return TResult<WrittenRule>::failure(
            (given.isUndefined() ? u"a rule needs a \"kind\""_s
                                 : u"\"kind\" wants a text, not "_s + SettingValue::shown(given)) +
            u"; possible: "_s + RuleSettings::kindNames().join(u", "_s));
    const QString name = given.toString();
    const RuleKindInfo *kind = RuleSettings::kind(name);
    if (kind == nullptr)
        return unknownKind(name);
    QJsonObject settings = object;
    settings.remove(kKind);
    SettingsCollector collector = collectorFor(*kind);
    return finishRule(*kind, collector, takeObject(collector, settings));
}

TResult<WrittenExtension> extension(const QString &text)
{
    if (isJson(text)) {
        const TResult<QJsonObject> object = jsonObject(ByteNames::toBytes(text));
        return object ? extension(object.value())
                      : TResult<WrittenExtension>::failure(object.message());
    }
    const TResult<QStringList> words = splitShellWords(text);
    if (!words)
        return TResult<WrittenExtension>::failure(words.message());
    SettingsCollector collector = extensionCollector();
    return finishExtension(collector, takeWords(collector, words.value()));
}

TResult<WrittenExtension> extension(const QJsonObject &object)
{
    SettingsCollector collector = extensionCollector();
    return finishExtension(collector, takeObject(collector, object));
}

} // namespace RuleWords
