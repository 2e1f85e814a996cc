// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/KeyedUnarchiver.h"

#include "platform/KeyedArchiveFormat.h"
#include "platform/KeyedArchiveJson.h"
#include "platform/KeyedDecoder.h"

#include <limits>

class KeyedUnarchiver::Private
{
public:
    explicit Private(KeyedArchiveFile archive)
        : file(std::move(archive))
    {
    }
    KeyedArchiveFile file;
};

KeyedUnarchiver::KeyedUnarchiver() = default;
KeyedUnarchiver::~KeyedUnarchiver() = default;
KeyedUnarchiver::KeyedUnarchiver(KeyedUnarchiver &&) noexcept = default;
KeyedUnarchiver &KeyedUnarchiver::operator=(KeyedUnarchiver &&) noexcept = default;

TResult<KeyedUnarchiver> KeyedUnarchiver::fromData(const QByteArray &data)
{
    TResult<KeyedArchiveFile> file = KeyedArchiveFile::fromData(data);
    if (!file)
        return TResult<KeyedUnarchiver>::failure(file.message());
    KeyedUnarchiver unarchiver;
    unarchiver.m_private = std::make_unique<Private>(std::move(file).value());
    return unarchiver;
}

qsizetype KeyedUnarchiver::count() const
{
    KeyedReading reading(m_private->file);
    const PlistItem &root = m_private->file.root();
    if (reading.kind(root) != KeyedReading::Kind::Array)
        return -1;
    return static_cast<qsizetype>(
        reading.references(root, KeyedArchiveFormat::kArrayObjects).count);
}

void KeyedUnarchiver::forEachObject(const TDecoder::Decode &decode) const
{
    forEachObject(0, std::numeric_limits<qsizetype>::max(), decode);
}

void KeyedUnarchiver::forEachObject(qsizetype first, qsizetype end,
                                    const TDecoder::Decode &decode) const
{
    KeyedReading reading(m_private->file);
    const PlistItem &root = m_private->file.root();
    if (reading.kind(root) == KeyedReading::Kind::Array)
        KeyedDecoder::forEachObject(reading, root, 1, decode, static_cast<quint64>(first),
                                    static_cast<quint64>(end));
}

QJsonValue KeyedUnarchiver::toJson(qsizetype maxValues) const
{
    return KeyedArchiveJson(m_private->file, maxValues).root();
}
