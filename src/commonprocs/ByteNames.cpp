// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/ByteNames.h"

#include "platform/Ascii.h"

#include <QVarLengthArray>

#include <algorithm>
#include <array>
#include <string_view>

using namespace Qt::StringLiterals;

namespace {

constexpr char16_t kRawBase = 0xDC00; ///< plus the byte, which is 0x80 or more
constexpr char32_t kReplacement = 0xFFFD;
constexpr QLatin1StringView kUpperHex = "0123456789ABCDEF"_L1;

/// Length of the valid UTF-8 sequence at the start, 0 when there is none.
int sequenceLength(const uchar *bytes, qsizetype left)
{
    const auto follows = [bytes, left](int at, uchar low = 0x80, uchar high = 0xBF) {
        return at < left && bytes[at] >= low && bytes[at] <= high;
    };
    const uchar lead = bytes[0];
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead <= 0xDF)
        return follows(1) ? 2 : 0;
    if (lead >= 0xE0 && lead <= 0xEF) {
        const bool second = lead == 0xE0   ? follows(1, 0xA0)
                            : lead == 0xED ? follows(1, 0x80, 0x9F)
                                           : follows(1);
        return second && follows(2) ? 3 : 0;
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        const bool second = lead == 0xF0   ? follows(1, 0x90)
                            : lead == 0xF4 ? follows(1, 0x80, 0x8F)
                                           : follows(1);
        return second && follows(2) && follows(3) ? 4 : 0;
    }
    return 0;
}

char32_t codePoint(const uchar *bytes, int length)
{
    constexpr uchar kLeadMask[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    char32_t code = bytes[0] & kLeadMask[length];
    for (int i = 1; i < length; ++i)
        code = (code << 6U) | (bytes[i] & 0x3FU);
    return code;
}

bool isAscii(QByteArrayView bytes)
{
    uchar all = 0;
    for (const char byte : bytes)
        all |= static_cast<uchar>(byte);
    return all < 0x80;
}

/// Writes one byte for each unit; true when that is all, false when they are not ASCII.
bool narrowed(QStringView text, char *out)
{
    const char16_t *const units = text.utf16();
    char16_t all = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        all |= units[i];
        out[i] = static_cast<char>(units[i]);
    }
    return all < 0x80;
}

char *appendUtf8(char *out, char32_t code)
{
    const auto put = [&out](char32_t byte) { *out++ = static_cast<char>(byte); };
    if (code < 0x80) {
        put(code);
    } else if (code < 0x800) {
        put(0xC0 | (code >> 6U));
        put(0x80 | (code & 0x3FU));
    } else if (code < 0x10000) {
        put(0xE0 | (code >> 12U));
        put(0x80 | ((code >> 6U) & 0x3FU));
        put(0x80 | (code & 0x3FU));
    } else {
        put(0xF0 | (code >> 18U));
        put(0x80 | ((code >> 12U) & 0x3FU));
        put(0x80 | ((code >> 6U) & 0x3FU));
        put(0x80 | (code & 0x3FU));
    }
    return out;
}

bool isRawByte(char16_t unit)
{
    return unit >= kRawBase + 0x80 && unit <= kRawBase + 0xFF;
}

bool isPairAt(QStringView text, qsizetype at)
{
    return text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
}

/// Calls visit(position) for every half of a pair, and stops at the first true.
template <typename Visit>
bool anyLoneSurrogate(QStringView text, Visit visit)
{
    if (isAscii(text))
        return false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!text[i].isSurrogate())
            continue;
        if (isPairAt(text, i))
            ++i;
        else if (visit(i))
            return true;
    }
    return false;
}

void appendHexByte(QString &out, char16_t mark, uchar byte)
{
    out += QChar(mark);
    if (mark == u'\\')
        out += u'x';
    out += QLatin1Char(kUpperHex[byte >> 4U]);
    out += QLatin1Char(kUpperHex[byte & 0x0FU]);
}

bool forgesLines(char16_t unit)
{
    const bool isControl = unit < 0x20 || (unit >= 0x7F && unit < 0xA0);
    const bool isSeparator = unit == 0x2028 || unit == 0x2029;
    const bool isDirection =
        (unit >= 0x202A && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069);
    return isControl || isSeparator || isDirection;
}

/// Whether a byte of a path stands for itself in a URL.
constexpr std::array<bool, 256> kStandsInUrl = [] {
    std::array<bool, 256> stands{};
    for (uchar byte = '0'; byte <= '9'; ++byte)
        stands[byte] = true;
    for (uchar letter = 'A'; letter <= 'Z'; ++letter)
        stands[letter] = stands[letter | 0x20U] = true;
    for (const char mark : std::string_view("-._~!$&'()*+,=:@/"))
        stands[static_cast<uchar>(mark)] = true;
    return stands;
}();

int hexValue(QChar digit)
{
    const qsizetype at = kUpperHex.indexOf(digit.toUpper());
    return digit.unicode() < 0x80 ? static_cast<int>(at) : -1;
}

} // namespace

QString ByteNames::fromBytes(QByteArrayView bytes)
{
    if (isAscii(bytes))
        return QString::fromLatin1(bytes);
    QVarLengthArray<char16_t, 512> out(bytes.size());
    char16_t *end = out.data();
    const auto *at = reinterpret_cast<const uchar *>(bytes.data());
    for (qsizetype left = bytes.size(); left > 0;) {
        const int length = sequenceLength(at, left);
        if (length == 0) {
            *end++ = static_cast<char16_t>(kRawBase + *at);
        } else if (const char32_t code = codePoint(at, length); length == 4) {
            *end++ = QChar::highSurrogate(code);
            *end++ = QChar::lowSurrogate(code);
        } else {
            *end++ = static_cast<char16_t>(code);
        }
        at += std::max(length, 1);
        left -= std::max(length, 1);
    }
    return QStringView(out.data(), end - out.data()).toString();
}

qsizetype ByteNames::toBytes(QStringView name, char *out)
{
    if (narrowed(name, out))
        return name.size();
    const char16_t *units = name.utf16();
    char *end = out;
    for (qsizetype i = 0; i < name.size(); ++i) {
        if (isPairAt(name, i)) {
            end = appendUtf8(end, QChar::surrogateToUcs4(units[i], units[i + 1]));
            ++i;
        } else if (isRawByte(units[i])) {
            *end++ = static_cast<char>(units[i] - kRawBase);
        } else {
            end = appendUtf8(end, QChar::isSurrogate(units[i]) ? kReplacement : units[i]);
        }
    }
    return end - out;
}

QByteArray ByteNames::toBytes(QStringView name)
{
    QByteArray ascii(name.size(), Qt::Uninitialized);
    if (narrowed(name, ascii.data()))
        return ascii;
    QVarLengthArray<char, 1024> buffer(name.size() * kMaxBytesPerUnit);
    const qsizetype length = toBytes(name, buffer.data());
    return {buffer.data(), length};
}

QString ByteNames::toUrlPath(const QString &path)
{
    const auto stands = [](QChar unit) {
        return unit.unicode() < 0x80 && kStandsInUrl[unit.unicode()];
    };
    if (std::all_of(path.cbegin(), path.cend(), stands))
        return path;
    constexpr qsizetype kMostUnits = 3; // "%XX"
    QVarLengthArray<char, 1024> bytes(path.size() * kMaxBytesPerUnit);
    bytes.resize(toBytes(path, bytes.data()));
    QVarLengthArray<char, 1024> out(bytes.size() * kMostUnits);
    char *end = out.data();
    for (const char byte : bytes) {
        const auto value = static_cast<uchar>(byte);
        if (kStandsInUrl[value]) {
            *end++ = byte;
        } else {
            *end++ = '%';
            *end++ = kUpperHex[value >> 4U].toLatin1();
            *end++ = kUpperHex[value & 0x0FU].toLatin1();
        }
    }
    return QString::fromLatin1(out.data(), end - out.data());
}

QString ByteNames::fromUrlPath(QStringView encoded)
{
    QVarLengthArray<char, 1024> bytes(encoded.size());
    char *end = bytes.data();
    for (qsizetype i = 0; i < encoded.size(); ++i) {
        const char16_t unit = encoded[i].unicode();
        if (unit == 0 || unit >= 0x80)
            return {};
        if (unit != u'%') {
            *end++ = static_cast<char>(unit);
            continue;
        }
        const int high = i + 2 < encoded.size() ? hexValue(encoded[i + 1]) : -1;
        const int low = i + 2 < encoded.size() ? hexValue(encoded[i + 2]) : -1;
        if (high < 0 || low < 0 || high + low == 0)
            return {};
        *end++ = static_cast<char>(high * 16 + low);
        i += 2;
    }
    return fromBytes({bytes.data(), end - bytes.data()});
}

bool ByteNames::hasRawBytes(QStringView name)
{
    return anyLoneSurrogate(name, [name](qsizetype at) { return isRawByte(name[at].unicode()); });
}

QString ByteNames::withoutLoneSurrogates(const QString &text)
{
    QString out = text;
    anyLoneSurrogate(text, [&text, &out](qsizetype at) {
        if (!isRawByte(text[at].unicode()))
            out[at] = QChar(static_cast<char16_t>(kReplacement));
        return false;
    });
    return out;
}

QString ByteNames::forDisplay(QStringView name)
{
    QString out;
    out.reserve(name.size());
    for (qsizetype i = 0; i < name.size(); ++i) {
        const char16_t unit = name[i].unicode();
        if (isPairAt(name, i)) {
            out += name.mid(i, 2);
            ++i;
        } else if (isRawByte(unit) || forgesLines(unit)) {
            for (const char byte : toBytes(name.mid(i, 1)))
                appendHexByte(out, u'\\', static_cast<uchar>(byte));
        } else {
            out += QChar::isSurrogate(unit) ? QChar(QChar::ReplacementCharacter) : QChar(unit);
        }
    }
    return out;
}
