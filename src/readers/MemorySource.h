// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "readers/ByteSource.h"

/// A block of bytes as a source; holds the block.
class MemorySource final : public ByteSource
{
public:
    explicit MemorySource(const QByteArray &block)
        : m_block(block)
    {
    }

    qint64 size() const override { return m_block.size(); }
    qint64 read(qint64 at, char *to, qint64 count) override;
    const char *map() override { return m_block.constData(); }

private:
    QByteArray m_block;
};
