// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/FormatHeaders.h"
#include "readers/Resolution.h"

#include <csetjmp>
#include <cstdio>
#include <jpeglib.h>

using namespace Qt::StringLiterals;

namespace {

constexpr size_t kBufferSize = 4096;
constexpr int kBlockMarker = JPEG_APP0 + 1;
constexpr unsigned kWholeMarker = 0xFFFF;
constexpr QByteArrayView kExifPrefix("Exif\0\0", 6);
constexpr QByteArrayView kXmpPrefix("http://ns.adobe.com/xap/1.0/\0", 29);

/// libjpeg leaves through a jump instead of ending the process.
struct ErrorJump
{
    jpeg_error_mgr base;
    std::jmp_buf back;
};

/// Hands the source to libjpeg piece by piece; what libjpeg skips is never read.
struct Feeder
{
    jpeg_source_mgr base;
    ByteSource *source;
    qint64 position;
    JOCTET buffer[kBufferSize];
};

Feeder *feederOf(j_decompress_ptr info)
{
    return reinterpret_cast<Feeder *>(info->src);
}

boolean fill(j_decompress_ptr info)
{
    Feeder *feeder = feederOf(info);
    qint64 got = feeder->source->read(feeder->position, reinterpret_cast<char *>(feeder->buffer),
                                      kBufferSize);
    feeder->position += got;
    if (got <= 0) { // a file that ends early ends like any other
        feeder->buffer[0] = 0xFF;
        feeder->buffer[1] = JPEG_EOI;
        got = 2;
    }
    feeder->base.next_input_byte = feeder->buffer;
    feeder->base.bytes_in_buffer = static_cast<size_t>(got);
    return TRUE;
}

void skip(j_decompress_ptr info, long count)
{
    Feeder *feeder = feederOf(info);
    if (count <= 0)
        return;
    const auto there = static_cast<long>(feeder->base.bytes_in_buffer);
    if (count <= there) {
        feeder->base.next_input_byte += count;
        feeder->base.bytes_in_buffer -= static_cast<size_t>(count);
        return;
    }
    feeder->position += count - there;
    feeder->base.bytes_in_buffer = 0;
}

void prepare(Feeder &feeder, ByteSource &source)
{
    feeder.base = {};
    feeder.base.init_source = [](j_decompress_ptr) {};
    feeder.base.fill_input_buffer = fill;
    feeder.base.skip_input_data = skip;
    feeder.base.resync_to_restart = jpeg_resync_to_restart;
    feeder.base.term_source = [](j_decompress_ptr) {};
    feeder.source = &source;
    feeder.position = 0;
}

void prepare(ErrorJump &error)
{
    jpeg_std_error(&error.base);
    error.base.error_exit = [](j_common_ptr info) {
        std::longjmp(reinterpret_cast<ErrorJump *>(info->err)->back, 1);
    };
    error.base.emit_message = [](j_common_ptr, int) {};
    error.base.output_message = [](j_common_ptr) {};
}

/// Only plain data lives in the frames that a jump leaves.
void readHeader(jpeg_decompress_struct &info, ErrorJump &error, Feeder &feeder)
{
    if (setjmp(error.back) != 0)
        return; // what was read before the fault stands in info
    jpeg_create_decompress(&info);
    info.src = &feeder.base;
    jpeg_save_markers(&info, kBlockMarker, kWholeMarker);
    jpeg_read_header(&info, TRUE);
}

QString colorModelOf(const jpeg_decompress_struct &info)
{
    switch (info.num_components) {
    case 1:
        return kModelGray;
    case 3:
        return kModelRgb;
    case 4:
        return kModelCmyk;
    default:
        return {};
    }
}

QVariantMap jfifOf(const jpeg_decompress_struct &info)
{
    const int minor = info.JFIF_minor_version;
    QVariantMap jfif{
        {u"JFIFVersion"_s, QVariantList{info.JFIF_major_version, minor / 16, minor % 16}},
        {u"XDensity"_s, info.X_density},
        {u"YDensity"_s, info.Y_density},
        {u"DensityUnit"_s, info.density_unit}};
    if (info.progressive_mode)
        jfif.insert(u"IsProgressive"_s, 1);
    return jfif;
}

void setDensity(ImageFacts &facts, const jpeg_decompress_struct &info)
{
    if (info.density_unit != 1 && info.density_unit != 2)
        return;
    const bool isMetric = info.density_unit == 2;
    facts.dpiWidth = isMetric ? dpiOfCentimetres(info.X_density) : info.X_density;
    facts.dpiHeight = isMetric ? dpiOfCentimetres(info.Y_density) : info.Y_density;
}

/// The first block of its kind, without the prefix; the saved blocks go with info.
QByteArray blockOf(const jpeg_decompress_struct &info, QByteArrayView prefix)
{
    for (jpeg_saved_marker_ptr marker = info.marker_list; marker != nullptr;
         marker = marker->next) {
        const QByteArrayView block(reinterpret_cast<const char *>(marker->data),
                                   static_cast<qsizetype>(marker->data_length));
        if (block.startsWith(prefix))
            return block.sliced(prefix.size()).toByteArray();
    }
    return {};
}

} // namespace

ImageFacts readJpegHeader(ByteSource &source)
{
    jpeg_decompress_struct info = {};
    ErrorJump error;
    Feeder feeder;
    prepare(error);
    prepare(feeder, source);
    info.err = &error.base;
    readHeader(info, error, feeder);
    ImageFacts facts;
    facts.width = info.image_width;
    facts.height = info.image_height;
    if (facts.width > 0) {
        facts.depth = info.data_precision;
        facts.colorModel = colorModelOf(info);
    }
    if (info.saw_JFIF_marker) {
        facts.dictionaries.insert(u"{JFIF}"_s, jfifOf(info));
        setDensity(facts, info);
    }
    facts.exif = blockOf(info, kExifPrefix);
    facts.xmp = blockOf(info, kXmpPrefix);
    jpeg_destroy_decompress(&info);
    return facts;
}
