// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariant>

#include <exiv2/value.hpp>

/// How a stored value is handed on.
enum class TagShape {
    Number,    ///< the first number; left out when its denominator is zero
    Numbers,   ///< all numbers as an array
    Text,      ///< up to the first NUL, without trailing blanks
    Copyright, ///< the photographer's text, else the editor's behind the NUL
    Comment,   ///< a text with a character code in front
    Digits,    ///< a version in digits, as an array
    Degrees,   ///< degrees, minutes and seconds as one number
    ClockTime, ///< hours, minutes and seconds as a text
    XmpDate,   ///< a date of XMP as Exif writes it, in the time of its own zone
    Data,      ///< bytes without a meaning of their own
    CanonEv,   ///< exposure steps as Canon counts them
    NikonEv,   ///< exposure steps as Nikon counts them
    Code,      ///< a number of a list, all ones for none
    Any        ///< a number when it is one, else a text
};

/// The value in that shape; invalid when it cannot be had, empty texts included. May throw what
/// Exiv2 throws.
QVariant shapedValue(const Exiv2::Value &value, TagShape shape);

/// Exposure steps as Canon counts them, in stops.
double canonExposure(int steps);
/// A text of unknown encoding: UTF-8 where it is valid, else Latin-1.
QString textOfBytes(const QByteArray &bytes);
/// The bytes of a value as they are stored.
QByteArray storedBytes(const Exiv2::Value &value);
