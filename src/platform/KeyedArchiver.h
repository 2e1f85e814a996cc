// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TCoder.h"
#include "platform/TResult.h"

#include <QIODevice>

#include <memory>

/// Writes a keyed archive whose root is an array of objects, in the binary property-list container,
/// while the objects come: only the tables of offsets and of shared texts are kept in memory, never
/// the objects. The device is not owned and must stay open until finish().
class KeyedArchiver
{
public:
    explicit KeyedArchiver(QIODevice &device);
    ~KeyedArchiver();
    KeyedArchiver(const KeyedArchiver &) = delete;
    KeyedArchiver &operator=(const KeyedArchiver &) = delete;

    /// Appends one object to the root array.
    void appendObject(TArchiveClass type, const TEncoder::Encode &encode);
    /// Writes root, tables and trailer. False when any write failed; the device then holds rubbish.
    [[nodiscard]] bool finish();

private:
    class Private;
    std::unique_ptr<Private> m_private;
};
