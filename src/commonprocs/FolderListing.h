// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/RepeatedNumbers.h"
#include "platform/FileManager.h"

#include <cstddef>
#include <deque>
#include <memory>
#include <stop_token>
#include <vector>

/// The names of one folder in the order of their bytes, and what the disk says of each. Hidden
/// names are passed over. Most of the time of a walk goes into the disk's answers, so a second
/// thread asks for them: while the folder is still being read, then ahead of whoever goes through
/// the names. Where inode numbers last and identities are enough, they come with the names, and
/// only what they do not tell is asked for. Used by one thread.
class FolderListing
{
public:
    /// The disk's answer about one name.
    struct Known
    {
        TFileStatus status;
        int error = 0; ///< why there is no status; 0 when there is
    };

    /// How much of a status is needed: all of it, or device, inode and kind, where these tell a
    /// file from any other.
    enum class Detail : quint8 { Everything, Identity };

    /// fileManager is not owned. Nothing more is asked once stop is requested; names that were not
    /// asked about count as having no error and an empty status.
    FolderListing(FileManager &fileManager, std::stop_token stop,
                  Detail detail = Detail::Everything);
    ~FolderListing();
    FolderListing(const FolderListing &) = delete;
    FolderListing &operator=(const FolderListing &) = delete;

    /// Reads all names of an open folder; 0 or an errno. Once.
    int read(int folder);
    std::size_t count() const;
    const char *name(std::size_t index) const;
    /// The answer about a name; indexes must not go down. Valid until the next call. The folder is
    /// the one that was read, and stays open until the next call or pause().
    const Known &known(std::size_t index, int folder);
    /// Returns when nobody uses the folder's descriptor any more.
    void pause();

private:
    struct Block;
    struct Slot;
    struct Identity;
    class Asker;
    class Window;

    bool inodesTell(int folder);
    void append(const char *name, const Identity &identity);
    bool takeIdentity(std::size_t index);
    std::size_t commonPrefix() const;
    void sort();
    const char *name(const Slot &slot) const;
    Known ask(const Slot &slot, int folder) const;
    std::unique_ptr<Window> window(std::size_t first, int folder) const;

    FileManager &m_fileManager;
    std::stop_token m_stop;
    Detail m_detail;
    quint64 m_device = 0;     ///< the folder's, when identities are enough
    RepeatedNumbers m_inodes; ///< of all entries then, hidden ones too
    Known m_identity;         ///< the answer made from a listed identity
    std::deque<Block> m_blocks;
    std::vector<Slot> m_slots;
    std::unique_ptr<Asker> m_asker;   ///< while the folder is read
    std::unique_ptr<Window> m_window; ///< the answers that are given out
    std::unique_ptr<Window> m_ahead;  ///< those after them, on their way; null: not begun
};
