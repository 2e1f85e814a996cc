// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/inspector/TagGroups.h"

#include "document/TRuleKinds.h"
#include "metadata/EXIFSupport.h"
#include "metadata/ID3AVSupport.h"
#include "metadata/TImageTagRule.h"
#include "platform/TDate.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QLocale>
#include <QMap>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr auto kImageRule = "ImageTag"_L1;
constexpr auto kGeneralKey = "{General}"_L1;
constexpr int kCodeLetters = 4;

struct FormatTitle
{
    QLatin1StringView format;
    const char *title;
};
constexpr FormatTitle kFormatTitles[] = {
    {"id3v1"_L1, "ID3v1"},
    {"id3v2"_L1, "ID3v2"},
    {"ape"_L1, "APE"},
    {"vorbis"_L1, "Vorbis"},
    {"asf"_L1, "ASF"},
    {"riff"_L1, "RIFF"},
    {"itunes"_L1, "iTunes"},
    {"aiff"_L1, "AIFF"},
    {"matroska"_L1, "Matroska"},
    {"quicktime-userdata"_L1, "QuickTime"},
    {"quicktime-metadata"_L1, "QuickTime"},
};

QString translated(const char *text)
{
    return QCoreApplication::translate("TagGroups", text);
}

bool isDictionary(const QVariant &value)
{
    return value.typeId() == QMetaType::QVariantMap;
}

/// Tags stand as people look for them, whatever their case.
void sortByName(std::vector<TagEntry> &entries)
{
    std::ranges::stable_sort(entries, [](const TagEntry &a, const TagEntry &b) {
        return a.name.compare(b.name, Qt::CaseInsensitive) < 0;
    });
}

TagGroup imageGroup(const QString &key, const QVariantMap &tags)
{
    TagGroup group{EXIFSupport::titleForCategory(key), {}};
    const QStringList offered = EXIFSupport::tagsForCategory(key);
    const bool isTopLevel = key == kGeneralKey;
    for (auto tag = tags.begin(); tag != tags.end(); ++tag) {
        if (isTopLevel && isDictionary(*tag))
            continue;
        const auto kind = offered.contains(tag.key()) ? kImageRule : QLatin1StringView();
        group.entries.push_back({tag.key(), *tag, kind, group.title});
    }
    sortByName(group.entries);
    return group;
}

/// A text, or the four letters of a code.
QString keyText(const QVariant &key)
{
    bool isCode = false;
    const auto code = static_cast<quint32>(key.toULongLong(&isCode));
    if (key.typeId() == QMetaType::QString || !isCode)
        return key.toString();
    QString letters;
    for (int i = kCodeLetters - 1; i >= 0; --i)
        letters += QChar::fromLatin1(static_cast<char>(code >> (8 * i) & 0xFFU));
    return letters;
}

QString titleOf(const QString &format)
{
    const auto title = std::ranges::find(kFormatTitles, format, &FormatTitle::format);
    return title == std::ranges::end(kFormatTitles) ? format : QString::fromLatin1(title->title);
}

QString shown(const QDateTime &moment)
{
    return QLocale().toString(moment, QLocale::ShortFormat);
}

QString shown(const TDate &date)
{
    return shown(QDateTime::fromMSecsSinceEpoch(date.milliseconds()));
}

QString textOf(const QVariantMap &dictionary)
{
    QStringList parts;
    for (auto entry = dictionary.begin(); entry != dictionary.end(); ++entry)
        parts += entry.key() + ": "_L1 + TTagRule::stringFromTagValue(*entry);
    return parts.join(", "_L1);
}

} // namespace

QString TagEntry::text() const
{
    switch (value.typeId()) {
    case QMetaType::QByteArray:
        return QCoreApplication::translate("TagGroups", "%n bytes", nullptr,
                                           static_cast<int>(value.toByteArray().size()));
    case QMetaType::QVariantMap:
        return textOf(value.toMap());
    case QMetaType::QDateTime:
        return shown(value.toDateTime());
    default:
        break;
    }
    return value.canConvert<TDate>() ? shown(value.value<TDate>())
                                     : TTagRule::stringFromTagValue(value);
}

TRulePtr TagEntry::rule() const
{
    if (ruleKind.isEmpty())
        return {};
    TRulePtr rule = TRuleKinds::ruleForIdentifier(ruleKind);
    if (auto *const tagRule = dynamic_cast<TTagRule *>(rule.get()))
        tagRule->setTheTag(name);
    if (auto *const imageRule = dynamic_cast<TImageTagRule *>(rule.get()))
        imageRule->setCategory(category);
    rule->updatePreview();
    return rule;
}

std::vector<TagGroup> TagGroups::ofImage(const TMetadata &properties)
{
    const QVariantMap all = properties.toVariantMap();
    QMap<QString, QVariantMap> others;
    for (auto entry = all.begin(); entry != all.end(); ++entry) {
        if (isDictionary(*entry))
            others.insert(entry.key(), entry->toMap());
    }
    std::vector<TagGroup> groups;
    for (const QString &key : EXIFSupport::categories())
        groups.push_back(imageGroup(key, key == kGeneralKey ? all : others.take(key)));
    for (auto other = others.begin(); other != others.end(); ++other)
        groups.push_back(imageGroup(other.key(), *other));
    std::erase_if(groups, [](const TagGroup &group) { return group.entries.empty(); });
    return groups;
}

TagGroup TagGroups::ofMedia(const TMetadata &tags, QLatin1StringView ruleKind)
{
    TagGroup group{translated(QT_TRANSLATE_NOOP("TagGroups", "Tags")), {}};
    QVariantMap all = tags.toVariantMap();
    for (const QString &name : ID3AVSupport::tags()) {
        if (const QVariant value = all.take(name); value.isValid())
            group.entries.push_back({name, value, ruleKind, {}});
    }
    for (auto tag = all.begin(); tag != all.end(); ++tag)
        group.entries.push_back({tag.key(), *tag, {}, {}});
    return group;
}

std::vector<TagGroup> TagGroups::stored(const MediaReading &media)
{
    std::vector<TagGroup> groups;
    for (const MediaItem &item : media.items) {
        const QString title = titleOf(item.format);
        if (groups.empty() || groups.back().title != title)
            groups.push_back({title, {}, false});
        groups.back().entries.push_back({keyText(item.key), item.value, {}, {}});
    }
    return groups;
}
