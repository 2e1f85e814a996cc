// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/FolderWalk.h"

#include "commonprocs/TwoHalves.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::size_t kOpenLevels = 32;
/// How many names are asked about at a time, so that memory stays small and stopping quick.
constexpr std::size_t kAskedAtOnce = 4096;

} // namespace

/// One name: where it stands among the names of its folder, and the eight bytes of it that tell
/// most names apart.
struct FolderWalk::Slot
{
    quint64 key = 0;
    quint64 place = 0;
};

/// The disk's answer about one name.
struct FolderWalk::Known
{
    TFileStatus status;
    int error = 0;
};

struct FolderWalk::Frame
{
    TFolderPtr folder;
    int descriptor = -1;
    std::vector<char> names; ///< each followed by a NUL
    std::vector<Slot> slots;
    std::size_t next = 0;
    std::vector<Known> known; ///< about the slots from firstKnown on
    std::size_t firstKnown = 0;

    const char *name(const Slot &slot) const { return names.data() + slot.place; }
    void append(const char *name);
    void sort();

private:
    std::size_t commonPrefix() const;
};

void FolderWalk::Frame::append(const char *name)
{
    slots.push_back({0, names.size()});
    names.insert(names.end(), name, name + std::strlen(name) + 1);
}

std::size_t FolderWalk::Frame::commonPrefix() const
{
    if (slots.empty())
        return 0;
    const char *const first = name(slots.front());
    std::size_t length = std::strlen(first);
    for (const Slot &slot : slots) {
        const char *const other = name(slot);
        std::size_t same = 0;
        while (same < length && first[same] == other[same])
            ++same;
        length = same;
    }
    return length;
}

void FolderWalk::Frame::sort()
{
    const std::size_t prefix = commonPrefix();
    for (Slot &slot : slots) {
        const char *at = name(slot) + prefix;
        for (unsigned shift = 64; shift > 0 && *at != '\0'; ++at) {
            shift -= 8;
            slot.key |= quint64{static_cast<quint8>(*at)} << shift;
        }
    }
    std::sort(slots.begin(), slots.end(), [this](const Slot &a, const Slot &b) {
        return a.key != b.key ? a.key < b.key : std::strcmp(name(a), name(b)) < 0;
    });
    // A folder that changes while it is read may yield a name twice.
    const auto same = [this](const Slot &a, const Slot &b) {
        return a.key == b.key && std::strcmp(name(a), name(b)) == 0;
    };
    slots.erase(std::unique(slots.begin(), slots.end(), same), slots.end());
}

FolderWalk::FolderWalk(FileManager &fileManager)
    : m_fileManager(fileManager)
{
}

int FolderWalk::open(Frame &frame)
{
    if (frame.descriptor < 0)
        frame.descriptor = m_fileManager.openFolder(frame.folder->bytes());
    return frame.descriptor < 0 ? -frame.descriptor : 0;
}

void FolderWalk::close(Frame &frame)
{
    if (frame.descriptor >= 0)
        m_fileManager.closeFolder(frame.descriptor);
    frame.descriptor = -1;
}

/// Asks about the next names.
void FolderWalk::ask(Frame &frame, const std::stop_token &stop)
{
    const std::size_t first = frame.next;
    const std::size_t end = std::min(first + kAskedAtOnce, frame.slots.size());
    frame.firstKnown = first;
    frame.known.assign(end - first, {});
    inTwoHalves(first, end, [&](std::size_t from, std::size_t to, int) {
        for (std::size_t i = from; i < to && !stop.stop_requested(); ++i) {
            const char *const name = frame.name(frame.slots[i]);
            const auto bytes =
                QByteArray::fromRawData(name, static_cast<qsizetype>(std::strlen(name)));
            Known &known = frame.known[i - first];
            known.error = m_fileManager.status(frame.descriptor, bytes, false, known.status);
        }
    });
}

void FolderWalk::push(std::vector<Frame> &frames, const TFolderPtr &folder, Visitor &visitor)
{
    if (frames.size() >= kOpenLevels)
        close(frames[frames.size() - kOpenLevels]);
    Frame frame;
    frame.folder = folder;
    int error = open(frame);
    if (error == 0) {
        error = m_fileManager.list(frame.descriptor,
                                   [&frame](const char *name, TFileStatus::Kind, quint64) {
                                       if (name[0] != '.')
                                           frame.append(name);
                                   });
    }
    if (error != 0) {
        close(frame);
        visitor.failed(*folder, error);
        return;
    }
    frame.sort();
    visitor.listed(*folder, static_cast<qsizetype>(frame.slots.size()));
    frames.push_back(std::move(frame));
}

void FolderWalk::walk(const TFolderPtr &start, Visitor &visitor, const std::stop_token &stop)
{
    std::vector<Frame> frames;
    push(frames, start, visitor);
    while (!frames.empty()) {
        Frame &frame = frames.back();
        const bool isDone = frame.next == frame.slots.size() || stop.stop_requested();
        const int error = isDone ? 0 : open(frame);
        if (isDone || error != 0) {
            if (error != 0)
                visitor.failed(*frame.folder, error);
            close(frame);
            frames.pop_back();
            continue;
        }
        if (frame.next == frame.firstKnown + frame.known.size()) {
            ask(frame, stop);
            continue; // unless it was stopped meanwhile
        }
        const Known &known = frame.known[frame.next - frame.firstKnown];
        const Slot &slot = frame.slots[frame.next++];
        const char *const name = frame.name(slot);
        const auto length = static_cast<qsizetype>(std::strlen(name));
        const TFolderPtr inner = visitor.visit(
            {frame.folder, QByteArray::fromRawData(name, length), known.status, known.error});
        if (inner != nullptr)
            push(frames, inner, visitor);
    }
}
