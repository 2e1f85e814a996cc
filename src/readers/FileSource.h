// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "readers/ByteSource.h"

/// A regular file as a source, opened once for all parsers. Anything else (folder, pipe, device)
/// stays closed and is never waited for. Small reads are served from a window of the file.
class FileSource final : public ByteSource
{
public:
    explicit FileSource(const QByteArray &path);
    ~FileSource() override;

    bool isOpen() const { return m_descriptor >= 0; }
    qint64 size() const override { return m_size; }
    qint64 read(qint64 at, char *to, qint64 count) override;
    const char *map() override;

private:
    qint64 readFile(qint64 at, char *to, qint64 count) const;

    int m_descriptor = -1;
    qint64 m_size = 0;
    QByteArray m_window;
    qint64 m_windowStart = 0;
    void *m_mapping = nullptr;
};
