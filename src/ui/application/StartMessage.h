// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QStringList>

/// What a later start tells the first one: a mark, the length of the rest in four bytes (most
/// significant first), and absolute paths as bytes, each followed by NUL. The answer is one line.
namespace StartMessage {

inline constexpr QByteArrayView kMark{"TAVRIN1\n"};
inline constexpr QByteArrayView kAnswer{"taken\n"};
/// No message is longer; an honest line of arguments is far shorter.
inline constexpr qsizetype kMostBytes = 64 * 1024 * 1024;

/// Empty when the paths are too many.
QByteArray encode(const QStringList &paths);

/// Collects one message as it arrives.
class Reader
{
public:
    enum class State { More, Complete, Damaged };

    State add(QByteArrayView bytes);
    /// Once complete.
    const QStringList &paths() const { return m_paths; }

private:
    State read();

    QByteArray m_bytes;
    QStringList m_paths;
};

} // namespace StartMessage
