// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMetaType>
#include <QtGlobal>

#include <limits>

/// A point in time in nanoseconds since 1970-01-01 UTC, or unset. Eight bytes, so that a million
/// file entries can carry two of them each.
struct TDate
{
    static constexpr qint64 kUnset = std::numeric_limits<qint64>::min();
    static constexpr qint64 kNanosPerSecond = 1'000'000'000;

    qint64 nanos = kUnset;

    static constexpr TDate fromSeconds(qint64 seconds, qint64 extraNanos = 0)
    {
        return {seconds * kNanosPerSecond + extraNanos};
    }
    constexpr bool isSet() const { return nanos != kUnset; }
    /// Milliseconds since 1970, rounded down; 0 when unset.
    constexpr qint64 milliseconds() const
    {
        if (!isSet())
            return 0;
        return nanos >= 0 ? nanos / 1'000'000 : -((-nanos + 999'999) / 1'000'000);
    }
    friend constexpr auto operator<=>(const TDate &, const TDate &) = default;
};

Q_DECLARE_METATYPE(TDate)
