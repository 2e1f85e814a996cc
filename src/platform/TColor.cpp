// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/TColor.h"

#include <QByteArrayList>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr std::array kClass{"NSColor", "NSObject"};
constexpr QLatin1StringView kSpaceKey{"NSColorSpace"};
constexpr QLatin1StringView kRgbKey{"NSRGB"};
constexpr qint64 kRgbSpace = 1;
constexpr double kFull = 255.0;
constexpr qsizetype kHexDigits = 6;
/// Enough for every channel value to come back as it was.
constexpr int kDigits = 9;

QByteArray channelText(quint8 channel)
{
    return QByteArray::number(channel / kFull, 'g', kDigits);
}

} // namespace

TColor TColor::fromHex(QStringView hex)
{
    quint32 rgb = 0;
    if (hex.size() != kHexDigits)
        return {};
    for (const QChar digit : hex) {
        const char16_t unit = digit.toUpper().unicode();
        if (unit >= u'0' && unit <= u'9')
            rgb = rgb * 16 + (unit - u'0');
        else if (unit >= u'A' && unit <= u'F')
            rgb = rgb * 16 + 10 + (unit - u'A');
        else
            return {};
    }
    return {static_cast<quint8>(rgb >> 16U), static_cast<quint8>(rgb >> 8U),
            static_cast<quint8>(rgb)};
}

QString TColor::hex() const
{
    if (!isSet())
        return {};
    return QString::number(m_rgb ^ kSet, 16).toUpper().rightJustified(kHexDigits, u'0');
}

TArchiveClass TColor::archiveClass()
{
    return kClass;
}

void TColor::encodeWithCoder(TEncoder &coder) const
{
    if (!isSet())
        return;
    coder.encodeInteger(kSpaceKey, kRgbSpace);
    coder.encodeData(kRgbKey,
                     channelText(red()) + ' ' + channelText(green()) + ' ' + channelText(blue()));
}

void TColor::initWithCoder(const TDecoder &coder)
{
    *this = {};
    // Other writers end the text with a NUL.
    const QByteArrayList parts = coder.decodeData(kRgbKey).replace('\0', "").trimmed().split(' ');
    if (coder.decodeInteger(kSpaceKey) != kRgbSpace || parts.size() != 3)
        return;
    std::array<quint8, 3> channels{};
    for (size_t i = 0; i < channels.size(); ++i) {
        bool ok = false;
        const double part = parts[static_cast<qsizetype>(i)].toDouble(&ok);
        if (!ok || !(part >= 0.0 && part <= 1.0))
            return;
        channels[i] = static_cast<quint8>(std::lround(part * kFull));
    }
    *this = TColor(channels[0], channels[1], channels[2]);
}
