// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

#include <span>
#include <vector>

/// What the value of a setting is. Choices are integers with an index range of their own.
enum class SettingType { Integer, Boolean, Text, Pairs, Table };

/// One setting of a rule kind, or of the extension handler: what users may write and what it means.
struct SettingInfo
{
    QLatin1StringView key;
    SettingType type;
    QLatin1StringView meaning;
    /// The number of choices of an integer, counted from 0; 0 when any number makes sense. Other
    /// numbers are allowed all the same (rules define what they do) unless closed is set.
    int choices = 0;
    bool closed = false;
    /// The texts on offer; null when any text makes sense. Others are refused when closed is set.
    QStringList (*texts)() = nullptr;
    /// Follows from another setting: accepted, but without effect.
    bool follows = false;
};

/// A rule kind of the palette.
struct RuleKindInfo
{
    QLatin1StringView kind;
    QLatin1StringView meaning;
    std::span<const SettingInfo> own;
    std::span<const SettingInfo> inherited; ///< the padding, limit and date settings, or nothing

    const SettingInfo *setting(const QString &key) const;
    std::vector<SettingInfo> settings() const;
};

/// The one table that parsing, checking, help and listing of recipes work from. Defaults are not in
/// it: they are what a new rule says.
namespace RuleSettings {

std::span<const RuleKindInfo> kinds();
const RuleKindInfo *kind(const QString &identifier);
QStringList kindNames();
std::span<const SettingInfo> extensionSettings();
/// "integer", "boolean", "text", "pairs" or "table".
QLatin1StringView typeName(SettingType type);
/// The choices of a setting as people would write them; empty when there are none.
QStringList possibleValues(const SettingInfo &setting);

} // namespace RuleSettings
