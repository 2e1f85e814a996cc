// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/ByteSource.h"

#include <cstring>

namespace {

constexpr int kLongestNumber = 8;

} // namespace

bool ByteSource::contains(qint64 at, qint64 count) const
{
    return at >= 0 && count >= 0 && at <= size() && count <= size() - at;
}

QByteArray ByteSource::bytes(qint64 at, qint64 count)
{
    if (!contains(at, count))
        return {};
    QByteArray result(count, Qt::Uninitialized);
    if (read(at, result.data(), count) != count)
        return {};
    return result;
}

std::optional<quint64> ByteSource::big(qint64 at, int count)
{
    unsigned char raw[kLongestNumber];
    if (!contains(at, count) || read(at, reinterpret_cast<char *>(raw), count) != count)
        return std::nullopt;
    quint64 number = 0;
    for (int i = 0; i < count; ++i)
        number = number << 8 | raw[i];
    return number;
}

std::optional<quint64> ByteSource::little(qint64 at, int count)
{
    unsigned char raw[kLongestNumber];
    if (!contains(at, count) || read(at, reinterpret_cast<char *>(raw), count) != count)
        return std::nullopt;
    quint64 number = 0;
    for (int i = count - 1; i >= 0; --i)
        number = number << 8 | raw[i];
    return number;
}

bool ByteSource::startsWith(qint64 at, const char *text)
{
    const auto length = static_cast<qint64>(std::strlen(text));
    return bytes(at, length) == QByteArrayView(text, length) && length > 0;
}
