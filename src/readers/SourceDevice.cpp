// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/SourceDevice.h"

SourceDevice::SourceDevice(ByteSource &source)
    : m_source(source)
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

qint64 SourceDevice::readData(char *to, qint64 most)
{
    const qint64 got = m_source.read(pos(), to, most);
    return got > 0 || most == 0 ? got : -1;
}
