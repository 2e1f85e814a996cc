// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <QtGlobal>

/// The layout of a journal, as writer and reader share it: a preamble, then frames, each a header
/// and a payload of whole records. The fields of every record are in docs/file-formats.md.
namespace JournalFormat {

/// Eight bytes of name, four of version (little-endian), four of zero.
inline constexpr char kPreamble[] = "TavrinJ\n\1\0\0\0\0\0\0";
inline constexpr qsizetype kPreambleSize = 16;
static_assert(sizeof kPreamble == kPreambleSize);

/// Payload length, sequence number, CRC-32C of both and of the payload; each four bytes,
/// little-endian. A length of zero ends the journal: the space behind is reserved, not written.
inline constexpr qsizetype kFrameHeaderSize = 12;
/// A frame is written out when it has grown past this.
inline constexpr qsizetype kFrameSize = qsizetype{64} * 1024;
/// The longest record, and with it the longest frame that a reader takes.
inline constexpr qsizetype kMaxRecord = qsizetype{512} * 1024;
inline constexpr qsizetype kMaxPayload = kFrameSize + kMaxRecord;

enum class Record : char {
    Header = 'H',
    Device = 'V', ///< the device of the files that follow
    Folder = 'D',
    File = 'F',
    PlanEnd = 'E',
    Intent = 'I',
    Move = 'M',
    Finished = 'Z'
};

/// Bits of a file record.
inline constexpr quint8 kHasBirth = 1;
inline constexpr quint8 kNeedsIntent = 2;
inline constexpr quint8 kInodeOnly = 4; ///< links, size and dates were not read

} // namespace JournalFormat
