// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TCoder.h"
#include "platform/TResult.h"

#include <QByteArray>
#include <QJsonValue>

#include <memory>

/// Reads keyed archives that anyone may have written. The file is all that is held: objects are
/// looked up in it when they are asked for, every count and offset is checked against its size,
/// nothing goes deeper than 32, and one pass hands out no more than a small multiple of the file's
/// size, however often objects refer to each other; past that, everything reads as unset.
/// May be read from any thread.
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
    /// The same for the elements from first to before end, in a pass of its own.
    void forEachObject(qsizetype first, qsizetype end, const TDecoder::Decode &decode) const;
    /// The whole archive as readable JSON: objects with "$class", dates as ISO 8601, data as
    /// base64. Depth is limited; shared references are written where they are used, up to a total
    /// of maxValues (and never many more than the file has bytes), past which the text "..."
    /// stands.
    QJsonValue toJson(qsizetype maxValues = 5'000'000) const;

private:
    KeyedUnarchiver();
    class Private;
    std::unique_ptr<Private> m_private;
};
