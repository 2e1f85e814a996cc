// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/SettingValue.h"

#include "cli/JsonWriter.h"
#include "platform/TStringTable.h"

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace SettingValue {

namespace {

constexpr QLatin1StringView kMapArray{"mapArray"};

using Value = TResult<QVariant>;

QString inQuotes(const QString &text)
{
    return u'"' + text + u'"';
}

QLatin1StringView expectation(SettingType type)
{
    static constexpr std::array kTexts{"a whole number"_L1, "true, false, 1 or 0"_L1, "a text"_L1,
                                       "an array of pairs (JSON form)"_L1,
                                       "an array of rows, each an array of texts (JSON form)"_L1};
    return kTexts[static_cast<std::size_t>(type)];
}

Value wrongType(const SettingInfo &setting, const QString &given)
{
    return Value::failure(
        u"%1 wants %2, not %3"_s.arg(setting.key, expectation(setting.type), given));
}

QString withoutBlanks(QString text)
{
    return text.remove(u' ');
}

Value checkedInteger(const SettingInfo &setting, qint64 number)
{
    if (setting.closed && (number < 0 || number >= setting.choices))
        return Value::failure(u"%1 cannot be %2; possible: %3"_s.arg(
            setting.key, QString::number(number), QString(setting.meaning)));
    return QVariant(number);
}

/// The text as the table of choices spells it.
Value checkedText(const SettingInfo &setting, const QString &text)
{
    if (!setting.closed)
        return QVariant(text.isNull() ? u""_s : text);
    const QStringList possible = RuleSettings::possibleValues(setting);
    const auto found =
        std::find_if(possible.begin(), possible.end(), [&text](const QString &choice) {
            return withoutBlanks(choice) == withoutBlanks(text);
        });
    if (found == possible.end())
        return Value::failure(unknownWord(setting.key, text, possible));
    return QVariant(*found);
}

/// An array of objects that hold exactly two texts each.
Value pairsFromJson(const SettingInfo &setting, const QJsonValue &json)
{
    const bool isMap = setting.key == kMapArray;
    const QString first = isMap ? u"original"_s : u"match"_s;
    const QString second = isMap ? u"target"_s : u"replace"_s;
    QVariantList pairs;
    const QJsonArray array = json.toArray();
    for (const QJsonValue element : array) {
        const QJsonObject pair = element.toObject();
        if (pair.size() != 2 || !pair[first].isString() || !pair[second].isString())
            return Value::failure(
                u"every element of %1 has the two texts \"%2\" and \"%3\", not %4"_s.arg(
                    setting.key, first, second, shown(element)));
        pairs.append(pair.toVariantMap());
    }
    return json.isArray() ? Value(QVariant(pairs)) : wrongType(setting, shown(json));
}

Value tableFromJson(const SettingInfo &setting, const QJsonValue &json)
{
    auto table = std::make_shared<TStringTable>();
    const QJsonArray rows = json.toArray();
    for (const QJsonValue row : rows) {
        QStringList cells;
        const QJsonArray array = row.toArray();
        for (const QJsonValue cell : array)
            cells.append(cell.toString());
        if (!row.isArray() || !std::all_of(array.begin(), array.end(),
                                           [](const QJsonValue &c) { return c.isString(); }))
            return wrongType(setting, shown(row));
        table->push_back(cells);
    }
    if (!json.isArray())
        return wrongType(setting, shown(json));
    return QVariant::fromValue(TStringTablePtr(std::move(table)));
}

} // namespace

TResult<QVariant> fromWord(const SettingInfo &setting, const QString &word)
{
    switch (setting.type) {
    case SettingType::Integer: {
        bool ok = false;
        const qint64 number = word.toLongLong(&ok);
        return ok ? checkedInteger(setting, number) : wrongType(setting, inQuotes(word));
    }
    case SettingType::Boolean:
        if (word == "true"_L1 || word == "1"_L1)
            return QVariant(true);
        if (word == "false"_L1 || word == "0"_L1)
            return QVariant(false);
        return wrongType(setting, inQuotes(word));
    case SettingType::Text:
        return checkedText(setting, word);
    default:
        return wrongType(setting, inQuotes(word));
    }
}

TResult<QVariant> fromJson(const SettingInfo &setting, const QJsonValue &json)
{
    switch (setting.type) {
    case SettingType::Integer:
        if (const QVariant number = json.toVariant(); number.typeId() == QMetaType::LongLong)
            return checkedInteger(setting, number.toLongLong());
        break;
    case SettingType::Boolean:
        if (json.isBool())
            return QVariant(json.toBool());
        if (json.isDouble() && (json.toDouble() == 0.0 || json.toDouble() == 1.0))
            return QVariant(json.toDouble() == 1.0);
        break;
    case SettingType::Text:
        if (json.isString())
            return checkedText(setting, json.toString());
        break;
    case SettingType::Pairs:
        return pairsFromJson(setting, json);
    case SettingType::Table:
        return tableFromJson(setting, json);
    }
    return wrongType(setting, shown(json));
}

QString shown(const QJsonValue &json)
{
    JsonWriter writer;
    writer.json(json);
    return QString::fromUtf8(writer.bytes());
}

QString unknownWord(const QString &what, const QString &word, const QStringList &possible)
{
    return u"unknown %1 \"%2\"; possible: %3"_s.arg(what, word, possible.join(u", "_s));
}

} // namespace SettingValue
