// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/RuleSettings.h"
#include "platform/TResult.h"

#include <QJsonValue>
#include <QVariant>

/// Values of settings as users write them, checked and turned into what properties hold: integers,
/// booleans, texts, pairs as a list of two-text maps, tables as TStringTablePtr. Failures say what
/// the setting wants.
namespace SettingValue {

TResult<QVariant> fromWord(const SettingInfo &setting, const QString &word);
TResult<QVariant> fromJson(const SettingInfo &setting, const QJsonValue &json);
/// A JSON value as people see it in a message.
QString shown(const QJsonValue &json);
/// The failure for a word that is none of those that are possible here.
QString unknownWord(const QString &what, const QString &word, const QStringList &possible);

} // namespace SettingValue
