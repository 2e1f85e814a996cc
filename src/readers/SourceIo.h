// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "readers/ByteSource.h"

#include <exiv2/basicio.hpp>

/// Lets Exiv2 read a source, so that it opens no path of its own; writing fails. The source must
/// outlive it.
class SourceIo final : public Exiv2::BasicIo
{
public:
    explicit SourceIo(ByteSource &source)
        : m_source(source)
    {
    }

    int open() override;
    int close() override { return 0; }
    long write(const Exiv2::byte *, long) override { return 0; }
    long write(Exiv2::BasicIo &) override { return 0; }
    int putb(Exiv2::byte) override { return EOF; }
    Exiv2::DataBuf read(long count) override;
    long read(Exiv2::byte *to, long count) override;
    int getb() override;
    void transfer(Exiv2::BasicIo &) override;
    int seek(long offset, Position position) override;
    Exiv2::byte *mmap(bool isWriteable) override;
    int munmap() override { return 0; }
    long tell() const override { return static_cast<long>(m_position); }
    size_t size() const override { return static_cast<size_t>(m_source.size()); }
    bool isopen() const override { return true; }
    int error() const override { return 0; }
    bool eof() const override { return m_eof; }
    std::string path() const override { return {}; }

private:
    ByteSource &m_source;
    qint64 m_position = 0;
    bool m_eof = false;
};
