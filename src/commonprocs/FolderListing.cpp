// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/FolderListing.h"

#include "commonprocs/LastingInodes.h"
#include "platform/Clock.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <thread>

namespace {

/// Names are handed to the second thread in such portions; smaller folders are one thread's work.
constexpr std::size_t kBlock = 512;
/// So many answers may be kept from before the names were in order.
constexpr std::size_t kMostBlocksAhead = 512;
/// How many names are asked about at a time, so that memory stays small and stopping quick.
constexpr std::size_t kWindow = 4096;
/// What each of two threads takes at a time of a window.
constexpr std::size_t kPiece = 64;

} // namespace

/// Names as they come from the folder, each followed by a NUL, and what was asked about them before
/// they were in order: all of them, or none.
struct FolderListing::Block
{
    std::vector<char> names;
    std::vector<quint32> places;
    std::vector<Known> known;
    std::vector<Identity> identities; ///< of all names, where these are enough; else empty
};

/// What a folder's listing itself says of an entry.
struct FolderListing::Identity
{
    quint64 inode = 0;
    TFileStatus::Kind kind = TFileStatus::Kind::Other;
};

/// One name: where it is kept, and the eight bytes of it that tell most names apart.
struct FolderListing::Slot
{
    quint64 key = 0;
    quint32 block = 0;
    quint32 index = 0;
};

/// Asks about whole blocks in the order in which they come, until it is told to stop.
class FolderListing::Asker
{
public:
    Asker(FileManager &fileManager, int folder)
        : m_fileManager(fileManager)
        , m_folder(folder)
        , m_thread([this](const std::stop_token &stop) { work(stop); })
    {
    }

    void add(Block &block)
    {
        {
            const std::lock_guard lock(m_mutex);
            m_blocks.push_back(&block);
        }
        m_changed.notify_one();
    }

private:
    void work(const std::stop_token &stop)
    {
        for (std::size_t asked = 0; asked < kMostBlocksAhead; ++asked) {
            Block *block = nullptr;
            {
                std::unique_lock lock(m_mutex);
                if (!m_changed.wait(lock, stop, [&] { return asked < m_blocks.size(); }) ||
                    stop.stop_requested())
                    return;
                block = m_blocks[asked];
            }
            std::vector<Known> known(block->places.size());
            for (std::size_t i = 0; i < known.size(); ++i) {
                const char *const name = block->names.data() + block->places[i];
                const auto bytes =
                    QByteArray::fromRawData(name, static_cast<qsizetype>(std::strlen(name)));
                known[i].error = m_fileManager.status(m_folder, bytes, false, known[i].status);
            }
            block->known = std::move(known);
        }
    }

    FileManager &m_fileManager;
    int m_folder;
    std::mutex m_mutex;
    std::condition_variable_any m_changed;
    std::vector<Block *> m_blocks; ///< guarded; full ones, that nobody else touches
    std::jthread m_thread;         ///< last, so that it ends before what it uses
};

/// The answers about some neighbouring names, asked for by a thread of its own and by whoever
/// cannot wait for it.
class FolderListing::Window
{
public:
    using Ask = std::function<Known(std::size_t index)>;

    Window(std::size_t first, std::size_t count, Ask ask)
        : m_first(first)
        , m_known(count)
        , m_ask(std::move(ask))
    {
        if (count >= kBlock)
            m_thread = std::jthread([this] { work(); });
    }

    bool holds(std::size_t index) const { return index - m_first < m_known.size(); }
    std::size_t end() const { return m_first + m_known.size(); }
    void finish()
    {
        work();
        if (m_thread.joinable())
            m_thread.join();
    }
    const Known &known(std::size_t index) const { return m_known[index - m_first]; }

private:
    void work()
    {
        for (;;) {
            const std::size_t from = m_claimed.fetch_add(kPiece);
            if (from >= m_known.size())
                return;
            const std::size_t to = std::min(from + kPiece, m_known.size());
            for (std::size_t i = from; i < to; ++i)
                m_known[i] = m_ask(m_first + i);
        }
    }

    std::size_t m_first;
    std::vector<Known> m_known;
    Ask m_ask;
    std::atomic<std::size_t> m_claimed = 0;
    std::jthread m_thread;
};

FolderListing::FolderListing(FileManager &fileManager, std::stop_token stop, Detail detail)
    : m_fileManager(fileManager)
    , m_stop(std::move(stop))
    , m_detail(detail)
{
}

FolderListing::~FolderListing() = default;

std::size_t FolderListing::count() const
{
    return m_slots.size();
}

int FolderListing::read(int folder)
{
    if (m_detail == Detail::Identity && !inodesTell(folder))
        m_detail = Detail::Everything;
    const bool asks = m_detail == Detail::Everything;
    const auto take = [&](const char *name, TFileStatus::Kind kind, quint64 inode) {
        if (!asks)
            m_inodes.add(inode);
        if (name[0] == '.')
            return;
        if (!m_blocks.empty() && m_blocks.back().places.size() == kBlock) {
            if (asks && m_asker == nullptr)
                m_asker = std::make_unique<Asker>(m_fileManager, folder);
            if (asks)
                m_asker->add(m_blocks.back());
            m_blocks.emplace_back();
        }
        append(name, {inode, kind});
    };
    const int error = m_fileManager.list(folder, take);
    m_inodes.settle();
    sort();
    m_asker.reset();
    return error;
}

/// Whether an inode number is enough to find a file of the folder again: it must stay the file's
/// own, and birth times must show when it has been given to another one since. A folder that was
/// changed in the future shows that the clock, and with it birth times, cannot be relied on.
bool FolderListing::inodesTell(int folder)
{
    TFileStatus status;
    if (!folderKeepsInodes(folder) || m_fileManager.status(folder, ".", false, status) != 0)
        return false;
    m_device = status.device;
    return status.birth.isSet() && status.modification <= SystemClock().now();
}

void FolderListing::append(const char *name, const Identity &identity)
{
    if (m_blocks.empty())
        m_blocks.emplace_back();
    Block &block = m_blocks.back();
    m_slots.push_back(
        {0, static_cast<quint32>(m_blocks.size() - 1), static_cast<quint32>(block.places.size())});
    block.places.push_back(static_cast<quint32>(block.names.size()));
    block.names.insert(block.names.end(), name, name + std::strlen(name) + 1);
    if (m_detail == Detail::Identity)
        block.identities.push_back(identity);
}

const char *FolderListing::name(const Slot &slot) const
{
    const Block &block = m_blocks[slot.block];
    return block.names.data() + block.places[slot.index];
}

const char *FolderListing::name(std::size_t index) const
{
    return name(m_slots[index]);
}

std::size_t FolderListing::commonPrefix() const
{
    if (m_slots.empty())
        return 0;
    const char *const first = name(m_slots.front());
    std::size_t length = std::strlen(first);
    for (const Slot &slot : m_slots) {
        const char *const other = name(slot);
        std::size_t same = 0;
        while (same < length && first[same] == other[same])
            ++same;
        length = same;
    }
    return length;
}

void FolderListing::sort()
{
    const std::size_t prefix = commonPrefix();
    for (Slot &slot : m_slots) {
        const char *at = name(slot) + prefix;
        for (unsigned shift = 64; shift > 0 && *at != '\0'; ++at) {
            shift -= 8;
            slot.key |= quint64{static_cast<quint8>(*at)} << shift;
        }
    }
    std::sort(m_slots.begin(), m_slots.end(), [this](const Slot &a, const Slot &b) {
        return a.key != b.key ? a.key < b.key : std::strcmp(name(a), name(b)) < 0;
    });
    // A folder that changes while it is read may yield a name twice.
    const auto same = [this](const Slot &a, const Slot &b) {
        return a.key == b.key && std::strcmp(name(a), name(b)) == 0;
    };
    m_slots.erase(std::unique(m_slots.begin(), m_slots.end(), same), m_slots.end());
}

FolderListing::Known FolderListing::ask(const Slot &slot, int folder) const
{
    const std::vector<Known> &before = m_blocks[slot.block].known;
    if (!before.empty())
        return before[slot.index];
    Known known;
    if (m_stop.stop_requested())
        return known;
    const char *const text = name(slot);
    const auto bytes = QByteArray::fromRawData(text, static_cast<qsizetype>(std::strlen(text)));
    known.error = m_fileManager.status(folder, bytes, false, known.status);
    return known;
}

std::unique_ptr<FolderListing::Window> FolderListing::window(std::size_t first, int folder) const
{
    const std::size_t count = std::min(kWindow, m_slots.size() - first);
    return std::make_unique<Window>(
        first, count, [this, folder](std::size_t index) { return ask(m_slots[index], folder); });
}

/// False when the listing does not tell enough: some file systems leave out kinds, and a file with
/// two names in the folder is not told by its inode.
bool FolderListing::takeIdentity(std::size_t index)
{
    const Slot &slot = m_slots[index];
    const Identity &identity = m_blocks[slot.block].identities[slot.index];
    if (identity.kind == TFileStatus::Kind::Other || identity.inode == 0 ||
        m_inodes.contains(identity.inode))
        return false;
    m_identity = {};
    m_identity.status.device = m_device;
    m_identity.status.inode = identity.inode;
    m_identity.status.kind = identity.kind;
    m_identity.status.isWhole = false;
    return true;
}

const FolderListing::Known &FolderListing::known(std::size_t index, int folder)
{
    if (m_detail == Detail::Identity) {
        if (!takeIdentity(index))
            m_identity = ask(m_slots[index], folder);
        return m_identity;
    }
    if (m_window == nullptr || !m_window->holds(index)) {
        const bool isAhead = m_ahead != nullptr && m_ahead->holds(index);
        m_window = isAhead ? std::move(m_ahead) : window(index, folder);
        m_window->finish();
        m_ahead.reset();
        if (m_window->end() < m_slots.size())
            m_ahead = window(m_window->end(), folder);
    }
    return m_window->known(index);
}

void FolderListing::pause()
{
    if (m_ahead != nullptr)
        m_ahead->finish();
}
