// SPDX-License-Identifier: GPL-3.0-or-later
// Journals of interrupted runs, whoever wrote them: every input is read as it stands, and once more
// as the records of a frame whose checksum is right.
#include "commonprocs/easyfile.h"
#include "rollback/Checksum.h"
#include "rollback/JournalContents.h"
#include "rollback/JournalFormat.h"
#include "rollback/RecoveryMatcher.h"

#include <QBuffer>
#include <QtEndian>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>

using namespace JournalFormat;

extern "C" size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t maxSize);

namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

/// A disk that has every folder and, in it, most names that are asked for, the length of a name
/// being its inode. It makes sure that nobody asks for anything outside of the folders.
class SomeDisk : public FileManager
{
public:
    explicit SomeDisk(const JournalContents &journal)
        : m_journal(journal)
    {
    }

    int openFolder(const QByteArray &path) override
    {
        const auto &folders = m_journal.folders();
        require(std::find(folders.begin(), folders.end(), path) != folders.end());
        return 1;
    }
    void closeFolder(int) override {}
    int status(int, const QByteArray &name, bool followLink, TFileStatus &out) override
    {
        require(isNameInFolder(name) && !followLink);
        out.inode = static_cast<quint64>(name.size());
        out.size = 7;
        out.modification = out.birth = TDate{2};
        return name.size() % 4 != 0 ? 0 : ENOENT;
    }
    int list(int,
             const std::function<void(const char *, TFileStatus::Kind, quint64)> &entry) override
    {
        for (const char *name : {"aaaaaa", "aaaaa", "bbb", "bb", "cc", "a"})
            entry(name, TFileStatus::Kind::File, std::strlen(name));
        return 0;
    }
    int renameNoReplace(int, const QByteArray &, const QByteArray &) override { std::abort(); }
    int renameReplacing(int, const QByteArray &, const QByteArray &) override { std::abort(); }
    int link(int, const QByteArray &, const QByteArray &) override { std::abort(); }
    int unlink(int, const QByteArray &) override { std::abort(); }
    int access(const QByteArray &, int) override { std::abort(); }
    int sync(int) override { std::abort(); }

private:
    const JournalContents &m_journal;
};

void read(QByteArray bytes)
{
    QBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);
    const auto contents = JournalContents::read(device);
    require(contents || !contents.message().isEmpty());
    if (!contents)
        return;
    const JournalContents &journal = contents.value();
    require(journal.end() <= bytes.size());
    for (const JournalContents::File &file : journal.files()) {
        require(file.folder < journal.folders().size());
        require(file.name.size == 0 || isNameInFolder(journal.text(file.name)));
        require(file.newName.size == 0 || isNameInFolder(journal.text(file.newName)));
    }
    SomeDisk disk(journal);
    RecoveryMatcher matcher(disk, journal, bytes.size() % 2 == 0);
    matcher.match();
    require(matcher.outcomes().size() == journal.files().size());
}

QByteArray framed(QByteArrayView payload)
{
    QByteArray bytes(kPreamble, kPreambleSize);
    char header[kFrameHeaderSize];
    qToLittleEndian(static_cast<quint32>(payload.size()), header);
    qToLittleEndian(quint32{0}, header + 4);
    qToLittleEndian(crc32c(payload, crc32c({header, 8})), header + 8);
    return bytes.append(header, kFrameHeaderSize).append(payload);
}

/// The records of a small journal: a header, a folder, two files, the plan's end, an intent, a
/// move.
constexpr char kSample[] = "H\4boot\0\0\0\0\0\0\0\1"
                           "V\1\0\0\0\0\0\0\0"
                           "D\2/f"
                           "F\1\0\1a\4\1\7\2\2"
                           "F\2\0\2bb\2\2\7\0"
                           "E\1\2"
                           "I\2\4name"
                           "M\1\3new";

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArrayView bytes(data, static_cast<qsizetype>(size));
    read(bytes.toByteArray());
    if (!bytes.isEmpty() && bytes.size() <= kMaxPayload)
        read(framed(bytes));
    return 0;
}

/// Mutations start from records that make sense.
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t maxSize,
                                          unsigned int seed)
{
    constexpr size_t kSize = sizeof kSample - 1;
    if (maxSize >= kSize && (size < 20 || seed % 1000 == 0)) {
        size = kSize;
        std::copy_n(kSample, size, data);
    }
    return LLVMFuzzerMutate(data, size, maxSize);
}
