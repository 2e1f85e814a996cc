// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TDate.h"
#include "platform/TStringTable.h"

#include <QString>
#include <QVariant>

/// Conversions on which archives in files and archives in memory agree.
namespace ArchiveValues {

/// Dates as keyed archives count them: seconds since the start of 2001, with a fraction.
double secondsFromDate(TDate date);
/// Unset when the number is no date that a TDate can hold.
TDate dateFromSeconds(double seconds);
/// Cuts the fraction off; 0 for a number that no integer can hold.
qint64 integerFromReal(double value);
/// Reads an integer, boolean or real; 0 for anything else, texts included.
qint64 integerFromVariant(const QVariant &value);
/// The whole URL of a percent-encoded base and what is relative to it.
QString joinedUrl(const QString &base, const QString &relative);
/// The variant with the type that an archive gives back: bool, qint64, quint64 (only above the
/// largest qint64), double, QString, QByteArray, TDate, QVariantList, QVariantMap. Invalid for
/// every other type and for unset values. Elements are left as they are.
QVariant canonical(const QVariant &value);
QVariantList listFromTable(const TStringTable &table);
/// Rows that are no lists are empty, cells that are no texts are null.
TStringTablePtr tableFromList(const QVariantList &list);

} // namespace ArchiveValues
