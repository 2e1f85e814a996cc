// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/LibavPicture.h"

#include <algorithm>
#include <cstring>
#include <memory>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/pixdesc.h>
}

namespace {

using Coder = CodedPicture::Coder;

constexpr int64_t kMostPixels = int64_t{64} * 1024 * 1024;

struct FreeContext
{
    void operator()(AVCodecContext *context) const { avcodec_free_context(&context); }
};
struct FreePacket
{
    void operator()(AVPacket *packet) const { av_packet_free(&packet); }
};
struct FreeFrame
{
    void operator()(AVFrame *frame) const { av_frame_free(&frame); }
};

using ContextPtr = std::unique_ptr<AVCodecContext, FreeContext>;
using PacketPtr = std::unique_ptr<AVPacket, FreePacket>;
using FramePtr = std::unique_ptr<AVFrame, FreeFrame>;

const AVCodec *decoderOf(Coder coder)
{
    constexpr AVCodecID kIds[] = {AV_CODEC_ID_HEVC, AV_CODEC_ID_AV1, AV_CODEC_ID_JPEG2000,
                                  AV_CODEC_ID_PSD, AV_CODEC_ID_TARGA};
    // The library's own takes twice the time.
    const AVCodec *codec =
        coder == Coder::Jpeg2000 ? avcodec_find_decoder_by_name("libopenjpeg") : nullptr;
    return codec ? codec : avcodec_find_decoder(kIds[static_cast<size_t>(coder)]);
}

/// A decoder that halves the picture so many times.
ContextPtr openDecoder(const CodedPicture &picture, int halvings)
{
    const AVCodec *codec = decoderOf(picture.coder);
    ContextPtr context(codec ? avcodec_alloc_context3(codec) : nullptr);
    if (!context)
        return nullptr;
    const auto size = static_cast<size_t>(picture.setup.size());
    context->extradata = static_cast<uint8_t *>(av_mallocz(size + AV_INPUT_BUFFER_PADDING_SIZE));
    if (!context->extradata)
        return nullptr;
    std::memcpy(context->extradata, picture.setup.constData(), size);
    context->extradata_size = static_cast<int>(size);
    context->thread_count = 1;
    context->lowres = halvings;
    context->max_pixels = kMostPixels;
    return avcodec_open2(context.get(), codec, nullptr) < 0 ? nullptr : std::move(context);
}

/// The picture in the data, which stands for itself; null when it cannot be decoded.
FramePtr decodeFrame(AVCodecContext &context, const QByteArray &data)
{
    const PacketPtr packet(av_packet_alloc());
    FramePtr frame(av_frame_alloc());
    const auto size = static_cast<int>(data.size());
    if (!packet || !frame || size == 0 || av_new_packet(packet.get(), size) < 0)
        return nullptr;
    std::memcpy(packet->data, data.constData(), static_cast<size_t>(size));
    // The end of the stream makes the decoder give out what it has.
    const bool isDecoded = avcodec_send_packet(&context, packet.get()) >= 0 &&
                           avcodec_send_packet(&context, nullptr) >= 0 &&
                           avcodec_receive_frame(&context, frame.get()) >= 0;
    avcodec_flush_buffers(&context);
    return isDecoded ? std::move(frame) : nullptr;
}

/// The weights of red and blue in the brightness.
struct Weights
{
    double red;
    double blue;
};

Weights weightsOf(AVColorSpace space)
{
    switch (space) {
    case AVCOL_SPC_BT709:
        return {0.2126, 0.0722};
    case AVCOL_SPC_BT2020_NCL:
    case AVCOL_SPC_BT2020_CL:
        return {0.2627, 0.0593};
    default:
        return {0.299, 0.114};
    }
}

/// Turns the samples of a frame, whatever their layout, into colours.
class Pixels
{
public:
    Pixels(const AVFrame &frame, const AVPixFmtDescriptor &format)
        : m_frame(frame)
        , m_format(format)
        , m_weights(weightsOf(frame.colorspace))
        , m_isRgb((format.flags & AV_PIX_FMT_FLAG_RGB) != 0)
        , m_isBig((format.flags & AV_PIX_FMT_FLAG_BE) != 0)
        , m_isFull(frame.color_range == AVCOL_RANGE_JPEG)
    {
    }

    /// Planes of unsigned samples of up to 16 bits; decoders of these coders make no others.
    static bool canRead(const AVPixFmtDescriptor &format)
    {
        constexpr uint64_t kStrange = AV_PIX_FMT_FLAG_PAL | AV_PIX_FMT_FLAG_BITSTREAM |
                                      AV_PIX_FMT_FLAG_HWACCEL | AV_PIX_FMT_FLAG_FLOAT;
        return (format.flags & kStrange) == 0 && format.comp[0].depth >= 8 &&
               format.comp[0].depth <= 16;
    }

    QRgb at(int x, int y) const
    {
        const double first = sample(0, x, y);
        if (m_format.nb_components < 3)
            return colour(brightness(first), brightness(first), brightness(first));
        const double second = sample(1, x, y);
        const double third = sample(2, x, y);
        if (m_isRgb)
            return colour(first, second, third);
        const double light = brightness(first);
        const double blue = light + 2 * (1 - m_weights.blue) * difference(second);
        const double red = light + 2 * (1 - m_weights.red) * difference(third);
        const double green = (light - m_weights.red * red - m_weights.blue * blue) /
                             (1 - m_weights.red - m_weights.blue);
        return colour(red, green, blue);
    }

private:
    /// From 0 to 255.
    double sample(int component, int x, int y) const
    {
        const AVComponentDescriptor &part = m_format.comp[component];
        const bool isChroma = !m_isRgb && (component == 1 || component == 2);
        const int column = isChroma ? x >> m_format.log2_chroma_w : x;
        const int row = isChroma ? y >> m_format.log2_chroma_h : y;
        const uint8_t *place = m_frame.data[part.plane] +
                               static_cast<ptrdiff_t>(row) * m_frame.linesize[part.plane] +
                               static_cast<ptrdiff_t>(column) * part.step + part.offset;
        const bool isWide = part.depth + part.shift > 8;
        const int stored = isWide ? place[m_isBig ? 0 : 1] << 8 | place[m_isBig ? 1 : 0] : place[0];
        return (stored >> part.shift & ((1 << part.depth) - 1)) * 255.0 / ((1 << part.depth) - 1);
    }
    double brightness(double sample) const { return m_isFull ? sample : (sample - 16) * 255 / 219; }
    double difference(double sample) const
    {
        return m_isFull ? sample - 128 : (sample - 128) * 255 / 224;
    }
    static QRgb colour(double red, double green, double blue)
    {
        const auto byte = [](double part) {
            return static_cast<int>(std::clamp(part + 0.5, 0.0, 255.0));
        };
        return qRgb(byte(red), byte(green), byte(blue));
    }

    const AVFrame &m_frame;
    const AVPixFmtDescriptor &m_format;
    Weights m_weights;
    bool m_isRgb;
    bool m_isBig;
    bool m_isFull;
};

/// Puts every step-th pixel of the tile into the picture; false when the tile is of a kind that
/// nobody makes.
bool paint(const AVFrame &tile, QPoint origin, int step, QImage &image)
{
    const AVPixFmtDescriptor *format = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(tile.format));
    if (!format || !Pixels::canRead(*format))
        return false;
    const Pixels pixels(tile, *format);
    const auto first = [step](int place) { return (place + step - 1) / step; };
    const int right = std::min(image.width(), first(origin.x() + tile.width));
    const int bottom = std::min(image.height(), first(origin.y() + tile.height));
    for (int y = first(origin.y()); y < bottom; ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = first(origin.x()); x < right; ++x)
            line[x] = pixels.at(x * step - origin.x(), y * step - origin.y());
    }
    return true;
}

/// How often the picture may be halved and still fills twice the edge. Only JPEG 2000 can leave out
/// its details.
int halvingsOf(const CodedPicture &picture, int edge)
{
    constexpr int kMost = 5; // as many as encoders make by default
    int halvings = 0;
    const int longer = std::max(picture.width, picture.height);
    while (picture.coder == Coder::Jpeg2000 && halvings < kMost &&
           longer >> (halvings + 1) >= 2 * edge)
        ++halvings;
    return halvings;
}

QImage decode(const CodedPicture &picture, int edge, int halvings)
{
    const ContextPtr context = openDecoder(picture, halvings);
    if (!context)
        return {};
    const auto halved = [halvings](int length) { return ((length - 1) >> halvings) + 1; };
    const QSize whole(halved(picture.width), halved(picture.height));
    const int step = std::max(1, std::max(whole.width(), whole.height()) / (2 * edge));
    QImage image(std::max(1, whole.width() / step), std::max(1, whole.height() / step),
                 QImage::Format_RGB32);
    image.fill(Qt::black);
    QSize size; // of each tile
    for (size_t i = 0; i < picture.tiles.size(); ++i) {
        const FramePtr tile = decodeFrame(*context, picture.tiles[i]);
        if (!tile)
            return {};
        if (picture.coder != Coder::Hevc && picture.coder != Coder::Av1)
            tile->color_range = AVCOL_RANGE_JPEG;
        if (i == 0)
            size = QSize(tile->width, tile->height);
        const qint64 left = static_cast<qint64>(i) % picture.columns * size.width();
        const qint64 top = static_cast<qint64>(i) / picture.columns * size.height();
        const bool isInside = left < whole.width() && top < whole.height();
        const QPoint origin(static_cast<int>(left), static_cast<int>(top));
        if (!isInside || QSize(tile->width, tile->height) != size ||
            !paint(*tile, origin, step, image))
            return {};
    }
    return image;
}

} // namespace

QImage decodeWithLibav(const CodedPicture &picture, int edge)
{
    av_log_set_level(AV_LOG_QUIET);
    if (edge <= 0)
        return {};
    const int halvings = halvingsOf(picture, edge);
    const QImage image = decode(picture, edge, halvings);
    if (!image.isNull() || halvings == 0)
        return image;
    // Few pictures have fewer steps to leave out. Large ones would take long.
    constexpr int64_t kMostAtOnce = int64_t{4} * 1024 * 1024;
    const int64_t pixels = int64_t{picture.width} * picture.height;
    return pixels <= kMostAtOnce ? decode(picture, edge, 0) : QImage();
}
