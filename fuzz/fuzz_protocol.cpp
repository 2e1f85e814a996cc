// SPDX-License-Identifier: GPL-3.0-or-later
// What the two sides of the metadata protocol may tell each other, whoever they are: every input is
// read as a stream of frames, as a reply and as a request. What is accepted must come through
// again.
#include "platform/MetadataFrames.h"
#include "platform/MetadataProtocol.h"

#include <cstdint>
#include <cstdlib>

using namespace MetadataProtocol;

namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

QByteArray contentOf(const QByteArray &frame)
{
    return frame.mid(kHeaderBytes);
}

void readContent(const QByteArray &content)
{
    isGreeting(content);
    if (const auto request = readRequest(content))
        require(readRequest(contentOf(frame(*request))).has_value());
    if (const auto reply = readReply(content)) {
        // A second time round, nothing changes any more.
        const QByteArray again = contentOf(frame(*reply));
        const auto second = readReply(again);
        require(second && contentOf(frame(*second)) == again);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArrayView bytes(data, static_cast<qsizetype>(size));
    readContent(bytes.toByteArray());
    MetadataFrames frames(kMaxReply);
    for (qsizetype half = bytes.size() / 2, part = 0; part < 2; ++part) {
        frames.append(part == 0 ? bytes.first(half) : bytes.sliced(half));
        while (const auto content = frames.next())
            readContent(*content);
    }
    return 0;
}
