// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/LibavFile.h"

#include "readers/ByteText.h"
#include "readers/ItemWriter.h"

#include <QHash>

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

extern "C" {
#include <libavformat/avformat.h>
}

using namespace Qt::StringLiterals;

namespace {

constexpr auto kNoProtocols = "none";
constexpr auto kMatroska = "matroska"_L1;
constexpr auto kOgg = "ogg"_L1;
/// The program that wrote a Matroska file; the tag of the same name is in capitals.
constexpr auto kMuxer = "encoder";
constexpr QByteArrayView kOwnLevels[] = {"TRACK/", "MOVIE/"};
/// What libavformat calls some comments of Ogg, and what they are called there.
constexpr std::pair<const char *, const char *> kOggNames[] = {
    {"TRACK", "TRACKNUMBER"}, {"DISC", "DISCNUMBER"}, {"COMMENT", "DESCRIPTION"}};
constexpr int kBufferSize = 32 * 1024;
/// Enough to find the streams of a broadcast; the pictures themselves are not looked at.
constexpr qint64 kBytesToProbe = qint64{2} * 1024 * 1024;
constexpr qint64 kTimeToProbe = qint64{2} * AV_TIME_BASE;

/// Which of libavformat's input is read: the source, from the place it last left.
struct Input
{
    ByteSource &source;
    qint64 at = 0;
};

int readInput(void *opaque, uint8_t *to, int count)
{
    auto *input = static_cast<Input *>(opaque);
    const qint64 got = input->source.read(input->at, reinterpret_cast<char *>(to), count);
    input->at += got;
    return got > 0 ? static_cast<int>(got) : AVERROR_EOF;
}

int64_t seekInput(void *opaque, int64_t offset, int whence)
{
    auto *input = static_cast<Input *>(opaque);
    const qint64 size = input->source.size();
    if ((whence & AVSEEK_SIZE) != 0)
        return size;
    const int from = whence & ~AVSEEK_FORCE;
    const qint64 start = from == SEEK_SET ? 0 : from == SEEK_CUR ? input->at : size;
    int64_t target = 0;
    if (__builtin_add_overflow(start, offset, &target) || target < 0)
        return AVERROR(EINVAL);
    return input->at = target;
}

int refuseToOpen(AVFormatContext *, AVIOContext **, const char *, int, AVDictionary **)
{
    return AVERROR(EACCES);
}

struct FreeIo
{
    void operator()(AVIOContext *io) const
    {
        av_freep(&io->buffer);
        avio_context_free(&io);
    }
};

struct CloseInput
{
    void operator()(AVFormatContext *context) const { avformat_close_input(&context); }
};

using IoPtr = std::unique_ptr<AVIOContext, FreeIo>;
using ContextPtr = std::unique_ptr<AVFormatContext, CloseInput>;

IoPtr makeIo(Input *input)
{
    auto *buffer = static_cast<unsigned char *>(av_malloc(kBufferSize));
    AVIOContext *io =
        buffer ? avio_alloc_context(buffer, kBufferSize, 0, input, readInput, nullptr, seekInput)
               : nullptr;
    if (!io)
        av_free(buffer);
    return IoPtr(io);
}

/// Opening frees the context itself when it fails.
ContextPtr openContext(AVIOContext *io, const AVInputFormat *format)
{
    AVFormatContext *context = avformat_alloc_context();
    if (!context)
        return nullptr;
    context->pb = io;
    context->flags |= AVFMT_FLAG_CUSTOM_IO;
    context->io_open = refuseToOpen;
    context->probesize = kBytesToProbe;
    context->max_analyze_duration = kTimeToProbe;
    AVDictionary *options = nullptr;
    av_dict_set(&options, "protocol_whitelist", kNoProtocols, 0);
    av_dict_set(&options, "format_whitelist", format->name, 0);
    const int result = avformat_open_input(&context, "", format, &options);
    av_dict_free(&options);
    return ContextPtr(result < 0 ? nullptr : context);
}

double durationOf(const AVStream &stream)
{
    if (stream.duration != AV_NOPTS_VALUE && stream.duration > 0)
        return static_cast<double>(stream.duration) * av_q2d(stream.time_base);
    const AVRational rate = stream.avg_frame_rate;
    const bool isCounted = stream.nb_frames > 0 && rate.num > 0 && rate.den > 0;
    return isCounted ? static_cast<double>(stream.nb_frames) / av_q2d(rate) : 0;
}

double durationOf(const AVFormatContext &context)
{
    if (context.duration != AV_NOPTS_VALUE && context.duration > 0)
        return static_cast<double>(context.duration) / AV_TIME_BASE;
    double longest = 0;
    for (unsigned int i = 0; i < context.nb_streams; ++i)
        longest = std::max(longest, durationOf(*context.streams[i]));
    return longest;
}

using Entries = QHash<QByteArray, QByteArrayList>;

/// "TRACK/TITLE" names the title of what the file holds, as "TITLE" does.
QByteArray plainName(const char *name)
{
    const QByteArray upper = QByteArray(name).toUpper();
    for (const QByteArrayView level : kOwnLevels) {
        if (upper.startsWith(level))
            return upper.sliced(level.size());
    }
    return upper;
}

void collect(const AVDictionary *dictionary, Entries &entries)
{
    const AVDictionaryEntry *entry = nullptr;
    while ((entry = av_dict_get(dictionary, "", entry, AV_DICT_IGNORE_SUFFIX)))
        entries[plainName(entry->key)].append(entry->value);
}

/// Ogg keeps its comments with each stream, the other containers with the whole.
Entries entriesOf(const AVFormatContext &context, QLatin1String format)
{
    Entries entries;
    if (format == kOgg) {
        for (unsigned int i = context.nb_streams; i-- > 0;)
            collect(context.streams[i]->metadata, entries);
        for (const auto &[here, there] : kOggNames) {
            if (entries.contains(here))
                entries.insert(there, entries.take(here));
        }
    }
    collect(context.metadata, entries);
    if (format == kMatroska && av_dict_get(context.metadata, kMuxer, nullptr, AV_DICT_MATCH_CASE))
        entries.remove(QByteArray(kMuxer).toUpper());
    return entries;
}

/// Some demuxers have several names: "matroska,webm".
QLatin1String firstName(const char *names)
{
    return QLatin1String(names, static_cast<qsizetype>(std::strcspn(names, ",")));
}

TagMeanings meaningsFor(QLatin1String format)
{
    if (format == kMatroska)
        return CommonKeys::matroska();
    return format == kOgg ? CommonKeys::vorbis() : CommonKeys::generic();
}

void addItems(const AVFormatContext &context, MediaReading &reading)
{
    const QLatin1String format = firstName(context.iformat->name);
    const Entries entries = entriesOf(context, format);
    ItemWriter items(reading, format);
    for (const TagMeaning &meaning : meaningsFor(format)) {
        for (const QByteArray &value : entries.value(QByteArray(meaning.key.latin1())))
            items.add(meaning, textOfBytes(value));
    }
}

} // namespace

std::optional<MediaReading> readWithLibav(ByteSource &source, const char *demuxer)
{
    av_log_set_level(AV_LOG_QUIET);
    const AVInputFormat *format = av_find_input_format(demuxer);
    if (!format)
        return std::nullopt;
    Input input = {source};
    const IoPtr io = makeIo(&input);
    const ContextPtr context = io ? openContext(io.get(), format) : nullptr;
    if (!context)
        return std::nullopt;
    MediaReading reading;
    addItems(*context, reading);
    reading.duration = durationOf(*context);
    if (reading.duration <= 0 && avformat_find_stream_info(context.get(), nullptr) >= 0)
        reading.duration = durationOf(*context);
    return reading;
}
