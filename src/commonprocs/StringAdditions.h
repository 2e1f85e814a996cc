// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// The string operations that rules share. Lengths and positions count UTF-16 units.

/// No text is padded by more than this, so that a wild width cannot exhaust the memory. Far beyond
/// any file name.
constexpr qsizetype kMaxPadding = 1 << 20;

/// Greedy lower-case Roman numeral; "" for 0 and below; thousands repeat "m" without limit (but no
/// longer than kMaxPadding units of them).
QString romanNumeralsFromInt(qint64 value);
/// The string without its first (last) n units; "" when n is at least the length. What a cut leaves
/// of a surrogate pair becomes U+FFFD at once, because half a pair can look like a raw byte.
QString stringByDroppingFistNCharactes(const QString &string, qint64 n);
QString stringByDroppingLastNCharactes(const QString &string, qint64 n);
/// Cuts the string to its first n units, in the same way; n is not negative.
void limitLength(QString &string, qint64 n);
/// A blank between a lower-case letter and an upper-case one ("myPhoto" becomes "my Photo").
QString insertBlankbeforeUpperCaseTransition(const QString &string);
/// The path without its first component: the first keeps a leading "/", the second does not.
QString stringByDroppingFirstPathComponent(const QString &path);
QString stringByRemovingFirstPathComponent(const QString &path);
/// Plain substring test; an empty needle is contained. Ignoring case folds character by character.
bool containsString(const QString &string, const QString &needle, bool caseSensitive);
/// Every occurrence replaced, left to right, literally. Ignoring case folds character by character,
/// so that "ß" and "ss" differ. An empty needle changes nothing.
QString stringByReplacing(const QString &string, const QString &needle, const QString &replacement,
                          bool caseSensitive);
/// Every character (code point) that occurs in characters removed.
QString stringByRemovingCharacters(const QString &string, const QString &characters);
/// White space and line breaks trimmed at both ends (Unicode White_Space).
QString stringByTrimmingWhitespace(const QString &string);
/// Full Unicode case conversion without locale.
QString upperCased(const QString &string);
/// The same in place where possible.
QString upperCased(QString &&string);
QString lowerCased(const QString &string);
/// The character for a padding index: "0", " ", "*", "-", "_", any other "x".
QChar paddingCharacter(qint64 index);
/// How many padding characters bring a text of the given length to the width; 0 when none.
qsizetype missingPadding(qint64 width, qsizetype length);
