// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/FolderWalk.h"

#include <cstring>
#include <memory>

namespace {

constexpr std::size_t kOpenLevels = 32;

} // namespace

struct FolderWalk::Frame
{
    TFolderPtr folder;
    int descriptor = -1;
    std::unique_ptr<FolderListing> listing;
    std::size_t next = 0;
};

FolderWalk::FolderWalk(FileManager &fileManager, FolderListing::Detail detail)
    : m_fileManager(fileManager)
    , m_detail(detail)
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
    frame.listing->pause();
    if (frame.descriptor >= 0)
        m_fileManager.closeFolder(frame.descriptor);
    frame.descriptor = -1;
}

void FolderWalk::push(std::vector<Frame> &frames, const TFolderPtr &folder, Visitor &visitor,
                      const std::stop_token &stop)
{
    if (frames.size() >= kOpenLevels)
        close(frames[frames.size() - kOpenLevels]);
    Frame frame;
    frame.folder = folder;
    frame.listing = std::make_unique<FolderListing>(m_fileManager, stop, m_detail);
    int error = open(frame);
    if (error == 0)
        error = frame.listing->read(frame.descriptor);
    if (error != 0) {
        close(frame);
        visitor.failed(*folder, error);
        return;
    }
    visitor.listed(*folder, static_cast<qsizetype>(frame.listing->count()));
    frames.push_back(std::move(frame));
}

void FolderWalk::walk(const TFolderPtr &start, Visitor &visitor, const std::stop_token &stop)
{
    std::vector<Frame> frames;
    push(frames, start, visitor, stop);
    while (!frames.empty()) {
        Frame &frame = frames.back();
        FolderListing &listing = *frame.listing;
        const bool isDone = frame.next == listing.count() || stop.stop_requested();
        const int error = isDone ? 0 : open(frame);
        if (isDone || error != 0) {
            if (error != 0)
                visitor.failed(*frame.folder, error);
            close(frame);
            frames.pop_back();
            continue;
        }
        const std::size_t index = frame.next++;
        const FolderListing::Known &known = listing.known(index, frame.descriptor);
        if (stop.stop_requested())
            continue; // it may not have been asked about
        const char *const name = listing.name(index);
        const auto length = static_cast<qsizetype>(std::strlen(name));
        const TFolderPtr inner = visitor.visit(
            {frame.folder, QByteArray::fromRawData(name, length), known.status, known.error});
        if (inner != nullptr)
            push(frames, inner, visitor, stop);
    }
}
