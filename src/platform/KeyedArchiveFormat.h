// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLatin1StringView>
#include <QtGlobal>

/// The names in a keyed archive that writer and reader must agree on.
namespace KeyedArchiveFormat {

inline constexpr QLatin1StringView kArchiverKey{"$archiver"};
inline constexpr QLatin1StringView kArchiver{"NSKeyedArchiver"};
inline constexpr QLatin1StringView kVersionKey{"$version"};
inline constexpr qint64 kVersion = 100000;
inline constexpr QLatin1StringView kTop{"$top"};
inline constexpr QLatin1StringView kRoot{"root"};
inline constexpr QLatin1StringView kObjects{"$objects"};
inline constexpr QLatin1StringView kNull{"$null"};
inline constexpr QLatin1StringView kClass{"$class"};
inline constexpr QLatin1StringView kClassName{"$classname"};
inline constexpr QLatin1StringView kClasses{"$classes"};

inline constexpr QLatin1StringView kArrayObjects{"NS.objects"};
inline constexpr QLatin1StringView kDictionaryKeys{"NS.keys"};
inline constexpr QLatin1StringView kUrlBase{"NS.base"};
inline constexpr QLatin1StringView kUrlRelative{"NS.relative"};
inline constexpr QLatin1StringView kDateTime{"NS.time"};
/// The same point in time to the nanosecond, which the seconds in NS.time cannot always say.
inline constexpr QLatin1StringView kDateNanos{"nanos"};
inline constexpr QLatin1StringView kStringText{"NS.string"};
inline constexpr QLatin1StringView kDataBytes{"NS.data"};

/// Collections and objects within each other: deeper ones are neither written nor read.
inline constexpr int kMaxDepth = 32;
/// Fields of one object that are looked up by name: more are not read, so that a search is short.
inline constexpr quint64 kMaxFields = 256;

} // namespace KeyedArchiveFormat
