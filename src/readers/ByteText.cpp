// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/ByteText.h"

#include <QStringDecoder>

QString textOfBytes(QByteArrayView bytes)
{
    const qsizetype end = bytes.indexOf('\0');
    const QByteArrayView text = end < 0 ? bytes : bytes.first(end);
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString decoded = utf8.decode(text);
    return utf8.hasError() ? QString::fromLatin1(text) : decoded;
}
