// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TCoder.h"
#include "platform/TResult.h"

#include <QByteArray>
#include <QJsonValue>

#include <memory>

/// Reads keyed archives that anyone may have written: the object table is decoded once into a flat
/// list, every count and offset is checked against the file's size, nothing recurses deeper than 32
/// and shared references are never expanded, so a hostile file costs no more than its own size.
class KeyedUnarchiver
{
public:
    /// Takes the whole file. The message of a failure says what is wrong with the data.
    static TResult<KeyedUnarchiver> fromData(const QByteArray &data);

    ~KeyedUnarchiver();
    KeyedUnarchiver(KeyedUnarchiver &&) noexcept;
    KeyedUnarchiver &operator=(KeyedUnarchiver &&) noexcept;

    /// Number of objects in the root array; -1 when the root is no array.
    qsizetype count() const;
    /// Calls decode for each object of the root array, in order. Elements that are not objects of a
    /// class are passed over.
    void forEachObject(const TDecoder::Decode &decode) const;
    /// The whole archive as readable JSON: objects with "$class", dates as ISO 8601, data as
    /// base64. Depth is limited; shared references are written where they are used, up to a total
    /// of maxValues, past which the text "..." stands.
    QJsonValue toJson(qsizetype maxValues = 5'000'000) const;

private:
    KeyedUnarchiver();
    class Private;
    std::unique_ptr<Private> m_private;
};
