// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/SourceIo.h"

#include <exiv2/error.hpp>

int SourceIo::open()
{
    m_position = 0;
    m_eof = false;
    return 0;
}

Exiv2::DataBuf SourceIo::read(long count)
{
    // The count comes from the file; more than there is must not be reserved.
    if (count < 0 || count > m_source.size())
        throw Exiv2::Error(Exiv2::kerInvalidMalloc);
    Exiv2::DataBuf buffer(count);
    buffer.size_ = read(buffer.pData_, count);
    return buffer;
}

long SourceIo::read(Exiv2::byte *to, long count)
{
    const qint64 got = m_source.read(m_position, reinterpret_cast<char *>(to), count);
    m_position += got;
    m_eof = got < count;
    return static_cast<long>(got);
}

int SourceIo::getb()
{
    Exiv2::byte one = 0;
    return read(&one, 1) == 1 ? one : EOF;
}

void SourceIo::transfer(Exiv2::BasicIo &)
{
    throw Exiv2::Error(Exiv2::kerErrorMessage, "read only");
}

int SourceIo::seek(long offset, Position position)
{
    const qint64 from = position == beg ? 0 : position == cur ? m_position : m_source.size();
    if (offset < -from || offset > m_source.size() - from)
        return 1;
    m_position = from + offset;
    m_eof = false;
    return 0;
}

Exiv2::byte *SourceIo::mmap(bool isWriteable)
{
    const char *bytes = isWriteable ? nullptr : m_source.map();
    if (!bytes)
        throw Exiv2::Error(Exiv2::kerErrorMessage, "cannot map");
    // Exiv2 asks for a pointer to change, but only reads through it.
    return reinterpret_cast<Exiv2::byte *>(const_cast<char *>(bytes));
}
