// SPDX-License-Identifier: GPL-3.0-or-later
#include "metadata/TagDictionary.h"

#include "document/TErrorLog.h"
#include "metadata/TTagRule.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kReadingFormat{"reading available av dict: %@"};
constexpr QLatin1StringView kTransferred{"   -- transferred common key %@ : %@ (from key %@)"};
constexpr QLatin1StringView kExcludedKeys[] = {"artwork"_L1};
constexpr QLatin1StringView kUnknownKey{"?"};
constexpr QLatin1StringView kTrackAtom{"trkn"};
constexpr QLatin1StringView kTrack{"track"};
constexpr QLatin1StringView kNumberOfTracks{"numberOfTracks"};
constexpr QLatin1StringView kDiskAtom{"disk"};
constexpr QLatin1StringView kDisk{"disk"};
constexpr QLatin1StringView kNumberOfDisks{"numberOfDisks"};
constexpr QLatin1StringView kDuration{"duration"};
constexpr QLatin1StringView kDurationHMS{"durationHMS"};

/// Of the fields of 16 bits, only the low bytes are read, so that track 300 is 44.
constexpr qsizetype kNumberByte = 3;
constexpr qsizetype kTotalByte = 5;

QString textOfCode(quint32 code)
{
    QByteArray letters;
    for (int shift = 24; shift >= 0 && (code >> shift & 0xFF) != 0; shift -= 8)
        letters.append(static_cast<char>(code >> shift & 0xFF));
    return QString::fromLatin1(letters);
}

QString textOfKey(const QVariant &key)
{
    switch (key.typeId()) {
    case QMetaType::QString:
        return key.toString();
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return textOfCode(static_cast<quint32>(key.toULongLong()));
    default:
        return kUnknownKey;
    }
}

QString byteAt(const QByteArray &bytes, qsizetype index)
{
    return QString::number(index < bytes.size() ? static_cast<quint8>(bytes[index]) : 0);
}

void addNumbers(QVariantMap &tags, QLatin1StringView number, QLatin1StringView total,
                const QVariant &value)
{
    if (value.typeId() != QMetaType::QByteArray)
        return;
    const QByteArray bytes = value.toByteArray();
    tags.insert(number, byteAt(bytes, kNumberByte));
    tags.insert(total, byteAt(bytes, kTotalByte));
}

bool isExcluded(const QString &commonKey)
{
    const QString key = commonKey.toLower();
    return std::find(std::begin(kExcludedKeys), std::end(kExcludedKeys), key) !=
           std::end(kExcludedKeys);
}

QString description(const QVariant &value)
{
    if (value.typeId() == QMetaType::QByteArray)
        return u'<' + QString::fromLatin1(value.toByteArray().toHex()) + u'>';
    return TTagRule::stringFromTagValue(value);
}

/// The time of day, in UTC, so many seconds after 1970 began.
void addDuration(QVariantMap &tags, double duration)
{
    constexpr double kDay = 86400;
    const auto narrowed = static_cast<double>(static_cast<float>(duration));
    double second = std::isfinite(narrowed) ? std::fmod(std::floor(narrowed), kDay) : 0;
    if (second < 0)
        second += kDay;
    const auto whole = static_cast<int>(second);
    const auto digits = [](int number) { return u"%1"_s.arg(number, 2, 10, '0'_L1); };
    const QString minutes = digits(whole / 60 % 60) + u'.' + digits(whole % 60);
    tags.insert(kDuration, minutes);
    tags.insert(kDurationHMS, QString(digits(whole / 3600) + u'.' + minutes));
}

} // namespace

QVariantMap tagDictionary(const MediaReading &media,
                          const std::function<void(const QString &)> &console)
{
    QVariantMap tags;
    const QString *format = nullptr;
    for (const MediaItem &item : media.items) {
        if (console && (format == nullptr || *format != item.format))
            console(formatted(kReadingFormat, {item.format}));
        format = &item.format;
        if (!item.key.isValid())
            continue;
        const QString key = textOfKey(item.key);
        if (item.commonKey.isEmpty()) {
            if (key == kTrackAtom)
                addNumbers(tags, kTrack, kNumberOfTracks, item.value);
            if (key == kDiskAtom)
                addNumbers(tags, kDisk, kNumberOfDisks, item.value);
        } else if (item.value.isValid() && !isExcluded(item.commonKey)) {
            tags.insert(item.commonKey, item.value);
            if (console)
                console(formatted(kTransferred, {item.commonKey, description(item.value), key}));
        }
    }
    addDuration(tags, media.duration);
    return tags;
}
