// SPDX-License-Identifier: GPL-3.0-or-later
#include "rollback/BootId.h"

#include <QFile>

using namespace Qt::StringLiterals;

QByteArray currentBootId()
{
    constexpr qint64 kLongest = 64;
    QFile file(u"/proc/sys/kernel/random/boot_id"_s);
    return file.open(QIODevice::ReadOnly) ? file.read(kLongest).trimmed() : QByteArray();
}
