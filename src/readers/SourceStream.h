// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "readers/ByteSource.h"

#include <taglib/tiostream.h>

/// A byte source as TagLib reads it. Writing does nothing: no file is ever changed through it.
/// The source outlives the stream.
class SourceStream final : public TagLib::IOStream
{
public:
    explicit SourceStream(ByteSource &source)
        : m_source(source)
    {
    }

    TagLib::FileName name() const override { return ""; }
    TagLib::ByteVector readBlock(unsigned long length) override;
    void writeBlock(const TagLib::ByteVector &) override {}
    void insert(const TagLib::ByteVector &, unsigned long, unsigned long) override {}
    void removeBlock(unsigned long, unsigned long) override {}
    bool readOnly() const override { return true; }
    bool isOpen() const override { return true; }
    void seek(long offset, Position from) override;
    long tell() const override { return m_at; }
    long length() override { return m_source.size(); }
    void truncate(long) override {}

private:
    ByteSource &m_source;
    qint64 m_at = 0;
};
