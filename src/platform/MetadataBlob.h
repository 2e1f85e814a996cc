// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <vector>

/// Metadata values as bytes, each with its type in front, and the shared texts that they refer to.
/// Written once while a file's metadata is put together, then only read.
class MetadataBlob
{
public:
    using Position = quint32;

    /// Appends a value; gives where it stands.
    Position append(const QVariant &value) { return append(value, 0); }
    Position appendText(const QString &text);
    /// Gives back memory that is not needed any more.
    void squeeze();

    QVariant value(Position position) const;

private:
    class Reader;

    Position append(const QVariant &value, int depth);
    void putTag(quint8 tag) { m_bytes.append(static_cast<char>(tag)); }
    void putCount(quint64 count);
    void putFixed(quint64 bits);

    QByteArray m_bytes;
    std::vector<QString> m_texts;
};
