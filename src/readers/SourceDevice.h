// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "readers/ByteSource.h"

#include <QIODevice>

/// Lets Qt read a source; opened for reading as soon as it is made. The source must outlive it.
class SourceDevice final : public QIODevice
{
public:
    explicit SourceDevice(ByteSource &source);

    bool isSequential() const override { return false; }
    qint64 size() const override { return m_source.size(); }

protected:
    qint64 readData(char *to, qint64 most) override;
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    ByteSource &m_source;
};
