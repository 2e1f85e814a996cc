// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/application/StartMessage.h"

#include "commonprocs/ByteNames.h"

#include <QtEndian>

namespace StartMessage {

namespace {

constexpr qsizetype kHeadBytes = kMark.size() + static_cast<qsizetype>(sizeof(quint32));

} // namespace

QByteArray encode(const QStringList &paths)
{
    QByteArray rest;
    for (const QString &path : paths) {
        rest += ByteNames::toBytes(path);
        rest += '\0';
        if (rest.size() > kMostBytes)
            return {};
    }
    QByteArray length(sizeof(quint32), '\0');
    qToBigEndian(static_cast<quint32>(rest.size()), length.data());
    return kMark.toByteArray() + length + rest;
}

Reader::State Reader::add(QByteArrayView bytes)
{
    m_bytes += bytes;
    return read();
}

Reader::State Reader::read()
{
    const QByteArrayView start = QByteArrayView(m_bytes).first(qMin(m_bytes.size(), kMark.size()));
    if (!kMark.startsWith(start))
        return State::Damaged;
    if (m_bytes.size() < kHeadBytes)
        return State::More;
    const auto length =
        static_cast<qsizetype>(qFromBigEndian<quint32>(m_bytes.constData() + kMark.size()));
    if (length > kMostBytes || m_bytes.size() > kHeadBytes + length)
        return State::Damaged;
    if (m_bytes.size() < kHeadBytes + length)
        return State::More;
    QByteArrayView rest = QByteArrayView(m_bytes).sliced(kHeadBytes);
    while (!rest.isEmpty()) {
        const qsizetype end = rest.indexOf('\0');
        if (end < 0 || rest.front() != '/')
            return State::Damaged;
        m_paths += ByteNames::fromBytes(rest.first(end));
        rest = rest.sliced(end + 1);
    }
    return State::Complete;
}

} // namespace StartMessage
