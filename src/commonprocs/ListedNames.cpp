// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/ListedNames.h"

#include "commonprocs/ByteNames.h"

namespace {

/// Fewer names are asked about one by one.
constexpr qsizetype kFewNames = 64;
/// How many entries of a folder are listed in the time that one question takes.
constexpr qint64 kListedForOneQuestion = 3;
/// Bytes of a folder for each of its entries, at least and roughly, as file systems report it.
constexpr qint64 kBytesOfEntry = 32;

} // namespace

void ListedNames::list(FileManager &fileManager, const TFolderPtr &folder, qsizetype names)
{
    if (names < kFewNames || m_folders.contains(folder))
        return;
    const int descriptor = fileManager.openFolder(folder->bytes());
    if (descriptor < 0)
        return;
    TFileStatus status;
    if (fileManager.status(descriptor, ".", false, status) == 0 &&
        status.size / kBytesOfEntry <= names * kListedForOneQuestion) {
        HashSet128 &listed = m_folders[folder];
        listed.reserve(names);
        fileManager.list(descriptor, [&listed](const char *name, TFileStatus::Kind, quint64) {
            listed.insert(Hash128::of(QByteArrayView(name)));
        });
    }
    fileManager.closeFolder(descriptor);
}

bool ListedNames::contain(const TFileURL &url) const
{
    const auto folder = m_folders.find(url.folder());
    return folder != m_folders.end() &&
           folder->second.contains(Hash128::of(ByteNames::toBytes(url.lastPathComponent())));
}
