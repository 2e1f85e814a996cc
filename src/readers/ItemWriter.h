// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MediaReading.h"
#include "readers/CommonKeys.h"

/// Adds the tags of one metadata format to a reading: texts under their common key at once, track
/// and disc as one item each when the writer goes away. Short-lived; the reading outlives it.
class ItemWriter
{
public:
    ItemWriter(MediaReading &reading, QLatin1String format);
    ~ItemWriter();
    ItemWriter(const ItemWriter &) = delete;
    ItemWriter &operator=(const ItemWriter &) = delete;

    /// Empty texts are left out. Genre numbers become words.
    void add(const TagMeaning &tag, const QString &text);
    /// Several values that one tag holds.
    void add(const TagMeaning &tag, const QStringList &texts);
    /// A track's or disc's number and total; 0 is unstated.
    void addNumbers(const TagMeaning &tag, int number, int total);

private:
    struct Position
    {
        int number = 0;
        int total = 0;
    };

    void addPosition(QLatin1String key, const Position &position);

    MediaReading &m_reading;
    QString m_format;
    Position m_track;
    Position m_disc;
};
