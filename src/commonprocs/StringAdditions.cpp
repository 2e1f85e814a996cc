// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/StringAdditions.h"

#include "platform/Ascii.h"

#include <QVarLengthArray>

#include <unicode/uchar.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr QStringView kPaddingCharacters = u"0 *-_";
constexpr QChar kOtherPadding = u'x';
constexpr QChar kBlank = u' ';
constexpr QChar kSlash = u'/';
constexpr char16_t kAsciiCaseBit = 0x20;
constexpr char16_t kFirstNonAscii = 0x80;

struct RomanDigit
{
    int value;
    QStringView letters;
};

constexpr int kRomanThousand = 1000;
constexpr RomanDigit kRomanDigits[] = {
    {900, u"cm"}, {500, u"d"}, {400, u"cd"}, {100, u"c"}, {90, u"xc"}, {50, u"l"},
    {40, u"xl"},  {10, u"x"},  {9, u"ix"},   {5, u"v"},   {4, u"iv"},  {1, u"i"},
};

using Characters = QVarLengthArray<char32_t, 64>;

char32_t folded(char32_t character)
{
    if (character < kFirstNonAscii)
        return character >= U'A' && character <= U'Z' ? character + (U'a' - U'A') : character;
    return static_cast<char32_t>(u_foldCase(static_cast<UChar32>(character), U_FOLD_CASE_DEFAULT));
}

/// The code point at a position, which moves on; half a pair counts as a character.
char32_t nextCharacter(QStringView text, qsizetype &position)
{
    UChar32 character = 0;
    U16_NEXT(text.utf16(), position, text.size(), character);
    return static_cast<char32_t>(character);
}

Characters characterList(QStringView text)
{
    Characters result;
    for (qsizetype position = 0; position < text.size();)
        result.append(nextCharacter(text, position));
    return result;
}

Characters foldedText(QStringView text)
{
    Characters result = characterList(text);
    std::transform(result.cbegin(), result.cend(), result.begin(), folded);
    return result;
}

/// Where the needle's match at a position ends; -1 when it does not match there.
qsizetype matchEnd(QStringView text, qsizetype position, const Characters &needle)
{
    for (const char32_t expected : needle) {
        if (position >= text.size() || folded(nextCharacter(text, position)) != expected)
            return -1;
    }
    return position;
}

QString replacedIgnoringCase(const QString &string, const QString &needle,
                             const QString &replacement)
{
    const Characters wanted = foldedText(needle);
    QString result;
    qsizetype copied = 0;
    bool found = false;
    for (qsizetype position = 0; position < string.size();) {
        const qsizetype end = matchEnd(string, position, wanted);
        if (end < 0) {
            nextCharacter(string, position);
            continue;
        }
        found = true;
        result.append(QStringView(string).sliced(copied, position - copied)).append(replacement);
        copied = position = end;
    }
    return found ? result.append(QStringView(string).sliced(copied)) : string;
}

/// Runs one of ICU's case conversions in the root locale; a second round has the room that the
/// first asked for.
template <class Convert>
QString converted(const QString &string, Convert convert)
{
    QString result(string.size(), Qt::Uninitialized);
    for (;;) {
        const auto room = static_cast<int32_t>(result.size());
        UErrorCode status = U_ZERO_ERROR;
        const int32_t length =
            convert(reinterpret_cast<char16_t *>(result.data()), room, QStringView(string).utf16(),
                    static_cast<int32_t>(string.size()), "", &status);
        result.resize(length);
        if (length <= room)
            return result;
    }
}

/// Whether a cut before the unit at a position would leave half a pair on either side.
bool dividesPair(QStringView text, qsizetype position)
{
    return position > 0 && position < text.size() && text[position - 1].isHighSurrogate() &&
           text[position].isLowSurrogate();
}

/// Where the rest begins after the first component and the separators that follow it.
qsizetype endOfFirstComponent(QStringView path)
{
    qsizetype position = 0;
    while (position < path.size() && path[position] == kSlash)
        ++position;
    while (position < path.size() && path[position] != kSlash)
        ++position;
    while (position < path.size() && path[position] == kSlash)
        ++position;
    return position;
}

} // namespace

QString romanNumeralsFromInt(qint64 value)
{
    if (value <= 0)
        return u""_s;
    QString result(qMin<qint64>(value / kRomanThousand, kMaxPadding), u'm');
    qint64 rest = value % kRomanThousand;
    for (const RomanDigit &digit : kRomanDigits) {
        for (; rest >= digit.value; rest -= digit.value)
            result += digit.letters;
    }
    return result;
}

QString stringByDroppingFistNCharactes(const QString &string, qint64 n)
{
    if (n < 1 || n >= string.size())
        return n < 1 ? string : u""_s;
    QString result = string.sliced(n);
    if (dividesPair(string, n))
        result.front() = QChar::ReplacementCharacter;
    return result;
}

QString stringByDroppingLastNCharactes(const QString &string, qint64 n)
{
    QString result = string;
    if (n > 0)
        limitLength(result, qMax<qint64>(0, string.size() - n));
    return result;
}

void limitLength(QString &string, qint64 n)
{
    if (n >= string.size())
        return;
    if (dividesPair(string, n))
        string[n - 1] = QChar::ReplacementCharacter;
    string.truncate(n);
}

QString insertBlankbeforeUpperCaseTransition(const QString &string)
{
    const QString upper = upperCased(string);
    const QString lower = lowerCased(string);
    // Whole-string forms may be shorter or longer than the string; what has none is no letter.
    const auto differs = [&string](const QString &form, qsizetype i) {
        return i < form.size() && form[i] != string[i];
    };
    QString result;
    result.reserve(string.size() * 2);
    for (qsizetype i = 0; i < string.size(); ++i) {
        result += string[i];
        const qsizetype next = i + 1;
        if (next < string.size() && differs(upper, i) && !differs(upper, next) &&
            differs(lower, next))
            result += kBlank;
    }
    return result;
}

QString stringByDroppingFirstPathComponent(const QString &path)
{
    const QString rest = stringByRemovingFirstPathComponent(path);
    return path.startsWith(kSlash) ? kSlash + rest : rest;
}

QString stringByRemovingFirstPathComponent(const QString &path)
{
    return path.sliced(endOfFirstComponent(path));
}

bool containsString(const QString &string, const QString &needle, bool caseSensitive)
{
    if (caseSensitive)
        return string.contains(needle);
    const Characters wanted = foldedText(needle);
    for (qsizetype position = 0; position < string.size(); nextCharacter(string, position)) {
        if (matchEnd(string, position, wanted) >= 0)
            return true;
    }
    return needle.isEmpty();
}

QString stringByReplacing(const QString &string, const QString &needle, const QString &replacement,
                          bool caseSensitive)
{
    if (needle.isEmpty())
        return string;
    if (!caseSensitive)
        return replacedIgnoringCase(string, needle, replacement);
    QString result = string;
    return result.replace(needle, replacement);
}

QString stringByRemovingCharacters(const QString &string, const QString &characters)
{
    if (std::find_first_of(string.cbegin(), string.cend(), characters.cbegin(),
                           characters.cend()) == string.cend())
        return string;
    const auto unwanted = characterList(characters);
    QString result;
    result.reserve(string.size());
    for (qsizetype position = 0; position < string.size();) {
        const qsizetype start = position;
        if (!unwanted.contains(nextCharacter(string, position)))
            result += QStringView(string).sliced(start, position - start);
    }
    return result;
}

QString stringByTrimmingWhitespace(const QString &string)
{
    return string.trimmed();
}

QString upperCased(const QString &string)
{
    return upperCased(QString(string));
}

QString upperCased(QString &&string)
{
    if (!isAscii(string))
        return converted(string, [](auto &&...arguments) { return u_strToUpper(arguments...); });
    for (QChar &unit : string)
        if (unit >= u'a' && unit <= u'z')
            unit = QChar(unit.unicode() & ~kAsciiCaseBit);
    return std::move(string);
}

QString lowerCased(const QString &string)
{
    if (isAscii(string))
        return string.toLower();
    return converted(string, [](auto &&...arguments) { return u_strToLower(arguments...); });
}

QChar paddingCharacter(qint64 index)
{
    return index >= 0 && index < kPaddingCharacters.size() ? kPaddingCharacters[index]
                                                           : kOtherPadding;
}

qsizetype missingPadding(qint64 width, qsizetype length)
{
    return width <= length ? 0 : qMin<qint64>(width - length, kMaxPadding);
}
