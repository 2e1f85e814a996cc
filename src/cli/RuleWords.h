// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/RuleSettings.h"
#include "platform/TResult.h"

#include <QJsonObject>
#include <QVariantMap>

/// A rule as the user wrote it, checked against the table of kinds but not made yet: nothing has
/// been read from disk for it.
struct WrittenRule
{
    const RuleKindInfo *kind = nullptr;
    QVariantMap settings; ///< under the rule's property keys
    QString csvFile;      ///< path of the table to read; empty when there is none
};

/// The extension handler's settings as the user wrote them, under the handler's field names.
using WrittenExtension = QVariantMap;

/// Reads rules and extension settings in their two forms: words ("Counter padding=3") and JSON. A
/// text that starts with "{" is JSON. Failures name the word and list what is possible.
namespace RuleWords {

TResult<WrittenRule> rule(const QString &text);
TResult<WrittenRule> rule(const QJsonObject &object);
TResult<WrittenExtension> extension(const QString &text);
TResult<WrittenExtension> extension(const QJsonObject &object);
/// One object from JSON text; the failure says where the text is wrong.
TResult<QJsonObject> jsonObject(const QByteArray &json);

} // namespace RuleWords
