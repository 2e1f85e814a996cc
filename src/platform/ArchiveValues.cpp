// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ArchiveValues.h"

#include <cmath>
#include <limits>

namespace {

/// From 1970-01-01 to 2001-01-01.
constexpr qint64 kReferenceSeconds = 978'307'200;
/// Seconds that still fit into a TDate.
constexpr double kDateLimit = 9'223'372'035.0;
constexpr double kIntegerLimit = 9'223'372'036'854'775'808.0;
constexpr QLatin1StringView kAbsolute{"://"};

} // namespace

double ArchiveValues::secondsFromDate(TDate date)
{
    // Whole seconds first: the difference in nanoseconds could overflow.
    const qint64 seconds = date.nanos / TDate::kNanosPerSecond;
    const qint64 rest = date.nanos % TDate::kNanosPerSecond;
    return static_cast<double>(seconds - kReferenceSeconds) +
           static_cast<double>(rest) / static_cast<double>(TDate::kNanosPerSecond);
}

TDate ArchiveValues::dateFromSeconds(double seconds)
{
    const double whole = std::floor(seconds);
    const double since1970 = whole + static_cast<double>(kReferenceSeconds);
    if (!(std::abs(since1970) < kDateLimit))
        return {};
    const double nanos = (seconds - whole) * static_cast<double>(TDate::kNanosPerSecond);
    return TDate::fromSeconds(static_cast<qint64>(since1970), std::llround(nanos));
}

qint64 ArchiveValues::integerFromReal(double value)
{
    return std::abs(value) < kIntegerLimit ? static_cast<qint64>(value) : 0;
}

qint64 ArchiveValues::integerFromVariant(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::LongLong:
        return value.toLongLong();
    case QMetaType::Double:
        return integerFromReal(value.toDouble());
    default:
        return 0;
    }
}

QString ArchiveValues::joinedUrl(const QString &base, const QString &relative)
{
    if (base.isEmpty() || (relative.contains(u':') && relative.contains(kAbsolute)))
        return relative;
    return base + relative;
}

QVariant ArchiveValues::canonical(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::LongLong:
    case QMetaType::Double:
    case QMetaType::QString:
    case QMetaType::QByteArray:
    case QMetaType::QVariantList:
    case QMetaType::QVariantMap:
        return value;
    case QMetaType::Float:
        return value.toDouble();
    case QMetaType::QStringList:
        return value.toList();
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        if (value.toULongLong() > static_cast<quint64>(std::numeric_limits<qint64>::max()))
            return value.toULongLong();
        return value.toLongLong();
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return value.toLongLong();
    default:
        break;
    }
    if (value.typeId() == qMetaTypeId<TDate>() && value.value<TDate>().isSet())
        return value;
    if (value.typeId() == qMetaTypeId<TStringTablePtr>() && value.value<TStringTablePtr>())
        return listFromTable(*value.value<TStringTablePtr>());
    return {};
}

QVariantList ArchiveValues::listFromTable(const TStringTable &table)
{
    QVariantList rows;
    rows.reserve(static_cast<qsizetype>(table.size()));
    for (const QStringList &row : table)
        rows.append(QVariant(QVariantList(row.begin(), row.end())));
    return rows;
}

TStringTablePtr ArchiveValues::tableFromList(const QVariantList &list)
{
    TStringTable table;
    table.reserve(static_cast<size_t>(list.size()));
    for (const QVariant &row : list) {
        QStringList cells;
        const QVariantList values = canonical(row).toList();
        for (const QVariant &value : values)
            cells.append(value.typeId() == QMetaType::QString ? value.toString() : QString());
        table.push_back(std::move(cells));
    }
    return newStringTable(std::move(table));
}
