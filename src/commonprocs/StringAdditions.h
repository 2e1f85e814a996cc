// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// The string operations that rules share. Lengths and positions count UTF-16 units.

/// Greedy lower-case Roman numeral; "" for 0 and below; thousands repeat "m" without limit.
QString romanNumeralsFromInt(qint64 value);
/// The string without its first (last) n units; "" when n is at least the length.
QString stringByDroppingFistNCharactes(const QString &string, qint64 n);
QString stringByDroppingLastNCharactes(const QString &string, qint64 n);
/// A blank between a lower-case letter and an upper-case one ("myPhoto" becomes "my Photo").
QString insertBlankbeforeUpperCaseTransition(const QString &string);
/// The path without its first component: the first keeps a leading "/", the second does not.
QString stringByDroppingFirstPathComponent(const QString &path);
QString stringByRemovingFirstPathComponent(const QString &path);
/// Plain substring test; an empty needle is contained.
bool containsString(const QString &string, const QString &needle, bool caseSensitive);
/// White space and line breaks trimmed at both ends (Unicode White_Space).
QString stringByTrimmingWhitespace(const QString &string);
/// Full Unicode case conversion without locale.
QString upperCased(const QString &string);
QString lowerCased(const QString &string);
/// The character for a padding index: "0", " ", "*", "-", "_", any other "x".
QChar paddingCharacter(qint64 index);
