// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MediaReading.h"
#include "platform/TMetadata.h"
#include "rules/TRuleModel.h"

#include <QString>
#include <QVariant>

#include <vector>

/// One tag of a file as the inspector lists it.
struct TagEntry
{
    QString name;
    QVariant value;
    /// The kind of rule that can put it into a name, as the palette identifies it; empty: none can.
    QLatin1StringView ruleKind;
    QString category; ///< as the image rule stores it

    /// The value as a rule would write it into a name, and for values that no rule can write
    /// (bytes, dictionaries) words that tell what they are.
    QString text() const;
    /// A new rule for the tag, with the next colour of the palette; null when none can be.
    TRulePtr rule() const;
};

/// Tags that belong together under a title.
struct TagGroup
{
    QString title;
    std::vector<TagEntry> entries;
    bool isOpen = true; ///< shows its tags at first
};

namespace TagGroups {

/// The categories of an image in the order in which the image rule offers them, then all others.
std::vector<TagGroup> ofImage(const TMetadata &properties);
/// The tags that audio and video rules know. ruleKind is that of the file.
TagGroup ofMedia(const TMetadata &tags, QLatin1StringView ruleKind);
/// What the file stores, format by format. Pictures are named, not shown.
std::vector<TagGroup> stored(const MediaReading &media);

} // namespace TagGroups
