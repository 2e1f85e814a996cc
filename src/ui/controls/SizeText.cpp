// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/controls/SizeText.h"

#include <QCoreApplication>
#include <QLocale>

namespace {

constexpr qint64 kMegabyte = qint64{1000} * 1000;

} // namespace

QString SizeText::of(qint64 bytes)
{
    if (bytes == 1)
        return QCoreApplication::translate("SizeText", "1 byte");
    return QLocale().formattedDataSize(bytes, bytes < kMegabyte ? 0 : 1, QLocale::DataSizeSIFormat);
}
