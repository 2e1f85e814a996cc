// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/KeyedArchiver.h"

#include "platform/KeyedObjectWriter.h"

class KeyedArchiver::Private
{
public:
    explicit Private(QIODevice &device)
        : writer(device)
    {
    }
    KeyedObjectWriter writer;
};

KeyedArchiver::KeyedArchiver(QIODevice &device)
    : m_private(std::make_unique<Private>(device))
{
}

KeyedArchiver::~KeyedArchiver() = default;

void KeyedArchiver::appendObject(TArchiveClass type, const TEncoder::Encode &encode)
{
    m_private->writer.appendToRoot(type, encode);
}

bool KeyedArchiver::finish()
{
    return m_private->writer.finish();
}
