// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/TagValue.h"

#include "readers/CommentText.h"

#include <QRegularExpression>
#include <QStringDecoder>
#include <QVariantList>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

// More numbers than any tag needs; TransferFunction has 768.
constexpr long kMostNumbers = 1024;
// A file name cannot show data, so that the rest of it is not worth carrying.
constexpr qsizetype kMostData = 32;
constexpr qint64 kMicrosPerSecond = 1000000;
constexpr qint64 kMicrosPerHour = 3600 * kMicrosPerSecond;
constexpr long kNoCode = 0xFFFF;
constexpr long kMostText = long{1024} * 1024;

template <typename T>
const T *as(const Exiv2::Value &value)
{
    return dynamic_cast<const T *>(&value);
}

/// Not through Value::toRational, which takes unsigned parts for signed ones.
template <typename T>
std::optional<double> quotient(const T &rational)
{
    if (rational.second == 0)
        return std::nullopt;
    return static_cast<double>(rational.first) / static_cast<double>(rational.second);
}

QVariant elementOf(const Exiv2::Value &value, long index)
{
    const auto i = static_cast<size_t>(index);
    if (index >= value.count())
        return {};
    std::optional<double> real;
    if (const auto *rationals = as<Exiv2::URationalValue>(value))
        real = quotient(rationals->value_[i]);
    else if (const auto *signedRationals = as<Exiv2::RationalValue>(value))
        real = quotient(signedRationals->value_[i]);
    else if (const auto *floats = as<Exiv2::FloatValue>(value))
        real = floats->value_[i];
    else if (const auto *doubles = as<Exiv2::DoubleValue>(value))
        real = doubles->value_[i];
    else if (const auto *longs = as<Exiv2::ULongValue>(value))
        return static_cast<qint64>(longs->value_[i]);
    else
        return static_cast<qint64>(value.toLong(index));
    return real && std::isfinite(*real) ? QVariant(*real) : QVariant();
}

bool isText(const Exiv2::Value &value)
{
    switch (value.typeId()) {
    case Exiv2::asciiString:
    case Exiv2::string:
    case Exiv2::comment:
    case Exiv2::date:
    case Exiv2::time:
    case Exiv2::xmpText:
    case Exiv2::xmpAlt:
    case Exiv2::xmpBag:
    case Exiv2::xmpSeq:
    case Exiv2::langAlt:
        return true;
    default:
        return false;
    }
}

QString trimmedEnd(QString text)
{
    text.remove(QChar(0));
    while (!text.isEmpty() && text.back().isSpace())
        text.chop(1);
    return text;
}

QVariant present(const QString &text)
{
    return text.isEmpty() ? QVariant() : QVariant(text);
}

QByteArray upToNul(const QByteArray &bytes)
{
    const qsizetype end = bytes.indexOf('\0');
    return end < 0 ? bytes : bytes.left(end);
}

QByteArray plainBytes(const Exiv2::Value &value)
{
    if (const auto *text = as<Exiv2::LangAltValue>(value))
        return QByteArray::fromStdString(text->toString(0));
    if (value.typeId() == Exiv2::xmpText || value.typeId() == Exiv2::xmpBag ||
        value.typeId() == Exiv2::xmpSeq || value.typeId() == Exiv2::xmpAlt)
        return QByteArray::fromStdString(value.toString(0));
    return storedBytes(value);
}

QVariant textOf(const Exiv2::Value &value)
{
    const bool spelled = isText(value) || value.typeId() == Exiv2::undefined ||
                         value.typeId() == Exiv2::unsignedByte;
    if (!spelled)
        return present(elementOf(value, 0).toString());
    return present(trimmedEnd(textOfBytes(upToNul(plainBytes(value)))));
}

QVariant copyrightOf(const Exiv2::Value &value)
{
    for (const QByteArray &part : storedBytes(value).split('\0')) {
        const QString text = trimmedEnd(textOfBytes(part));
        if (!text.isEmpty())
            return text;
    }
    return {};
}

/// A number written out ("200", "28/10"); texts that only begin with one stay texts.
QVariant numberInText(const QString &text)
{
    bool isNumber = false;
    if (const qlonglong whole = text.toLongLong(&isNumber); isNumber)
        return whole;
    const qsizetype slash = text.indexOf(u'/');
    const double above = text.left(slash).toDouble(&isNumber);
    if (!isNumber || slash < 0)
        return isNumber ? QVariant(above) : QVariant();
    const double below = text.mid(slash + 1).toDouble(&isNumber);
    return isNumber && below != 0 ? QVariant(above / below) : QVariant();
}

QVariant numberOf(const Exiv2::Value &value)
{
    if (!isText(value))
        return elementOf(value, 0);
    return numberInText(textOf(value).toString().trimmed());
}

QVariant numbersOf(const Exiv2::Value &value)
{
    QVariantList list;
    if (isText(value)) {
        for (const QString &part : textOf(value).toString().split(u' ', Qt::SkipEmptyParts)) {
            const QVariant number = numberInText(part);
            list.append(number.isValid() ? number : QVariant(0));
        }
    } else {
        for (long i = 0; i < std::min(value.count(), kMostNumbers); ++i) {
            // One that is not known (0/0) keeps its place, so that the others keep theirs.
            const QVariant number = elementOf(value, i);
            list.append(number.isValid() ? number : QVariant(0));
        }
    }
    return list.isEmpty() ? QVariant() : QVariant(list);
}

QVariant digitsOf(const Exiv2::Value &value)
{
    QVariantList digits;
    for (const char c : storedBytes(value).left(8))
        digits.append(c >= '0' && c <= '9' ? c - '0' : static_cast<int>(static_cast<uchar>(c)));
    if (digits.size() > 2 && digits.front().toInt() == 0)
        digits.removeFirst();
    while (digits.size() > 2 && digits.back().toInt() == 0)
        digits.removeLast();
    return digits.isEmpty() ? QVariant() : QVariant(digits);
}

QVariant degreesOf(const Exiv2::Value &value)
{
    const QVariant degrees = elementOf(value, 0);
    if (isText(value) || !degrees.isValid())
        return {};
    const double minutes = elementOf(value, 1).toDouble();
    const double seconds = elementOf(value, 2).toDouble();
    return degrees.toDouble() + minutes / 60 + seconds / 3600;
}

QVariant clockTimeOf(const Exiv2::Value &value)
{
    if (isText(value))
        return textOf(value);
    double parts[3] = {};
    for (int i = 0; i < 3; ++i) {
        const QVariant part = elementOf(value, i);
        if (!part.isValid() || part.toDouble() < 0 || part.toDouble() > 100000)
            return {};
        parts[i] = part.toDouble();
    }
    auto hours = static_cast<qint64>(parts[0]);
    auto minutes = static_cast<qint64>(parts[1]);
    qint64 micros = std::llround(parts[2] * kMicrosPerSecond);
    // A part may hand a fraction down to the next ones. What is no time as it is stored, a leap
    // second for one, stays so, and rounding makes none of what is.
    if (parts[0] < 24 && parts[1] < 60 && parts[2] < 60) {
        const double seconds = 3600 * parts[0] + 60 * parts[1] + parts[2];
        const qint64 all =
            std::min(std::llround(seconds * kMicrosPerSecond), 24 * kMicrosPerHour - 1);
        hours = all / kMicrosPerHour;
        minutes = all / (60 * kMicrosPerSecond) % 60;
        micros = all % (60 * kMicrosPerSecond);
    }
    QString text = u"%1:%2:%3.%4"_s.arg(hours, 2, 10, QChar(u'0'))
                       .arg(minutes, 2, 10, QChar(u'0'))
                       .arg(micros / kMicrosPerSecond, 2, 10, QChar(u'0'))
                       .arg(micros % kMicrosPerSecond, 6, 10, QChar(u'0'));
    while (text.endsWith(u'0'))
        text.chop(1);
    return text.endsWith(u'.') ? text.chopped(1) : text;
}

QVariant xmpDateOf(const Exiv2::Value &value)
{
    static const QRegularExpression kIsoDate(
        u"^(\\d{4})-(\\d\\d)-(\\d\\d)(?:T(\\d\\d:\\d\\d)(:\\d\\d)?)?"_s);
    const QRegularExpressionMatch date = kIsoDate.match(textOf(value).toString());
    if (!date.hasMatch())
        return {};
    const QString day = date.captured(1) + u':' + date.captured(2) + u':' + date.captured(3);
    const QString seconds = date.capturedLength(5) > 0 ? date.captured(5) : u":00"_s;
    return date.capturedLength(4) > 0 ? QString(day + u' ' + date.captured(4) + seconds) : day;
}

QVariant commentOf(const Exiv2::Value &value)
{
    const auto *comment = as<Exiv2::CommentValue>(value);
    if (!comment)
        return textOf(value);
    return present(trimmedEnd(textOfComment(*comment)));
}

QVariant nikonEvOf(const Exiv2::Value &value)
{
    const QByteArray bytes = storedBytes(value);
    if (bytes.size() < 3 || bytes[2] == 0)
        return {};
    return static_cast<double>(static_cast<signed char>(bytes[0])) *
           static_cast<signed char>(bytes[1]) / static_cast<signed char>(bytes[2]);
}

QVariant anyOf(const Exiv2::Value &value)
{
    const QVariant number =
        value.count() > 1 && !isText(value) ? numbersOf(value) : numberOf(value);
    return number.isValid() ? number : textOf(value);
}

} // namespace

double canonExposure(int steps)
{
    // Thirds are not multiples of 1/32, so that 12 and 20 stand for them.
    const int sign = steps < 0 ? -1 : 1;
    const int whole = std::abs(steps) / 32;
    const int rest = std::abs(steps) % 32;
    const double fraction = rest == 12 ? 1.0 / 3 : rest == 20 ? 2.0 / 3 : rest / 32.0;
    return sign * (whole + fraction);
}

QString textOfBytes(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(bytes);
    return decoder.hasError() ? QString::fromLatin1(bytes) : text;
}

QByteArray storedBytes(const Exiv2::Value &value)
{
    const long size = value.size();
    if (size <= 0 || size > kMostText)
        return {};
    QByteArray bytes(size, '\0');
    value.copy(reinterpret_cast<Exiv2::byte *>(bytes.data()), Exiv2::bigEndian);
    return bytes;
}

QVariant shapedValue(const Exiv2::Value &value, TagShape shape)
{
    switch (shape) {
    case TagShape::Number:
        return numberOf(value);
    case TagShape::Numbers:
        return numbersOf(value);
    case TagShape::Text:
        return textOf(value);
    case TagShape::Copyright:
        return copyrightOf(value);
    case TagShape::Comment:
        return commentOf(value);
    case TagShape::Digits:
        return digitsOf(value);
    case TagShape::Degrees:
        return degreesOf(value);
    case TagShape::ClockTime:
        return clockTimeOf(value);
    case TagShape::XmpDate:
        return xmpDateOf(value);
    case TagShape::Data:
        return value.size() > 0 ? QVariant(storedBytes(value).left(kMostData)) : QVariant();
    case TagShape::CanonEv:
        return canonExposure(static_cast<qint16>(value.toLong(0)));
    case TagShape::NikonEv:
        return nikonEvOf(value);
    case TagShape::Code:
        return value.toLong(0) == kNoCode ? QVariant() : numberOf(value);
    case TagShape::Any:
        return anyOf(value);
    }
    return {};
}
