// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

/// File names are bytes; the rest of the program works on QString. Bytes that are not valid UTF-8
/// become U+DC80..U+DCFF one by one and go back unchanged. This is the only place that converts in
/// either direction, because Qt's own conversions lose such names (and a leading U+FEFF).
namespace ByteNames {

QString fromBytes(QByteArrayView bytes);
/// Any other half of a surrogate pair becomes U+FFFD.
QByteArray toBytes(QStringView name);
/// The same into a buffer that has room for kMaxBytesPerUnit bytes a UTF-16 unit; returns the
/// length. No NUL is added.
qsizetype toBytes(QStringView name, char *out);
inline constexpr qsizetype kMaxBytesPerUnit = 3;
/// Percent-encodes the bytes of a path for a file URL ("/" stays).
QString toUrlPath(const QString &path);
/// The reverse; null when the text is no valid percent-encoding (or holds a NUL).
QString fromUrlPath(QStringView encoded);
/// True when the name carries bytes that are not valid UTF-8.
bool hasRawBytes(QStringView name);
/// The text with every half of a surrogate pair that is no raw byte replaced by U+FFFD.
QString withoutLoneSurrogates(const QString &text);
/// For people: control characters, line and direction marks, and raw bytes as \xNN, so that no
/// name can forge a line.
QString forDisplay(QStringView name);

} // namespace ByteNames
