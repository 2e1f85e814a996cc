// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

/// The bytes of a binary property list that writer and reader must agree on. A file is the magic,
/// the objects, one offset for each object, and a trailer that says where everything is.
namespace BinaryPlistFormat {

inline constexpr char kMagic[] = {'b', 'p', 'l', 'i', 's', 't', '0', '0'};
inline constexpr quint64 kMagicSize = sizeof(kMagic);
/// Six unused bytes, offset size, reference size, then count, top object and table offset.
inline constexpr quint64 kTrailerSize = 32;
inline constexpr quint64 kTrailerUnused = 6;

/// The upper half of an object's first byte; the lower half is a size or a count.
enum Marker : quint8 {
    kSingleton = 0x00,
    kInteger = 0x10,
    kReal = 0x20,
    kDate = 0x30,
    kData = 0x40,
    kAscii = 0x50,
    kUtf16 = 0x60,
    kUid = 0x80,
    kArray = 0xA0,
    kDictionary = 0xD0,
};
inline constexpr quint8 kNullByte = 0x00;
inline constexpr quint8 kFalseByte = 0x08;
inline constexpr quint8 kTrueByte = 0x09;
inline constexpr quint8 kDateByte = 0x33;
/// The lower half that says that the count follows as an integer.
inline constexpr quint8 kLongCount = 0x0F;

} // namespace BinaryPlistFormat
