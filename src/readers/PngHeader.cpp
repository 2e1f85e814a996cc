// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/FormatHeaders.h"
#include "readers/PngChunkFeed.h"
#include "readers/Resolution.h"
#include "readers/TagValue.h"

#include <array>
#include <csetjmp>
#include <cstring>
#include <png.h>

using namespace Qt::StringLiterals;

namespace {

constexpr png_alloc_size_t kMostChunkMemory = png_alloc_size_t{8} * 1024 * 1024;
constexpr png_uint_32 kMostTextChunks = 256;
constexpr png_uint_32 kLargestSide = 0x7FFFFFFF;

struct TextKey
{
    const char *keyword;
    QLatin1StringView key;
};
constexpr TextKey kTextKeys[] = {
    {"Author", "Author"_L1},
    {"Copyright", "Copyright"_L1},
    {"Creation Time", "Creation Time"_L1},
    {"Description", "Description"_L1},
    {"Software", "Software"_L1},
    {"Title", "Title"_L1},
};

/// The two structures of libpng, freed together.
struct Reader
{
    png_structp png = nullptr;
    png_infop info = nullptr;

    Reader()
    {
        png = png_create_read_struct(
            PNG_LIBPNG_VER_STRING, nullptr,
            [](png_structp failed, png_const_charp) { png_longjmp(failed, 1); },
            [](png_structp, png_const_charp) {});
        info = png ? png_create_info_struct(png) : nullptr;
    }
    ~Reader() { png_destroy_read_struct(&png, &info, nullptr); }
    Reader(const Reader &) = delete;
    Reader &operator=(const Reader &) = delete;
};

void feed(png_structp png, png_bytep to, size_t count)
{
    auto *source = static_cast<PngChunkFeed *>(png_get_io_ptr(png));
    if (!source->read(reinterpret_cast<char *>(to), static_cast<qint64>(count)))
        png_error(png, "end of file");
}

/// Only plain data lives in the frames that a jump leaves. Once this is over, nothing may be called
/// that could jump.
void readInfo(Reader &reader, PngChunkFeed &source)
{
    if (setjmp(png_jmpbuf(reader.png)) != 0)
        return; // what was read before the fault stands in info
    png_set_read_fn(reader.png, &source, feed);
    png_set_user_limits(reader.png, kLargestSide, kLargestSide);
    png_set_chunk_malloc_max(reader.png, kMostChunkMemory);
    png_set_chunk_cache_max(reader.png, kMostTextChunks);
    png_read_info(reader.png, reader.info);
}

/// One getter a number: the one that gives them all complains of a missing header by a jump.
void readPixelFacts(const Reader &reader, ImageFacts &facts, QVariantMap &png)
{
    facts.width = png_get_image_width(reader.png, reader.info);
    facts.height = png_get_image_height(reader.png, reader.info);
    if (facts.width == 0 || facts.height == 0)
        return;
    const int color = png_get_color_type(reader.png, reader.info);
    facts.depth = png_get_bit_depth(reader.png, reader.info);
    facts.isIndexed = color == PNG_COLOR_TYPE_PALETTE;
    facts.colorModel = color & PNG_COLOR_MASK_COLOR ? kModelRgb : kModelGray;
    facts.hasAlpha =
        (color & PNG_COLOR_MASK_ALPHA) || png_get_valid(reader.png, reader.info, PNG_INFO_tRNS);
    png.insert(u"InterlaceType"_s,
               static_cast<int>(png_get_interlace_type(reader.png, reader.info)));
}

void readDensity(const Reader &reader, ImageFacts &facts, QVariantMap &png)
{
    png_uint_32 x = 0;
    png_uint_32 y = 0;
    int unit = 0;
    if (!png_get_pHYs(reader.png, reader.info, &x, &y, &unit) || unit != PNG_RESOLUTION_METER)
        return;
    png.insert(u"XPixelsPerMeter"_s, x);
    png.insert(u"YPixelsPerMeter"_s, y);
    facts.dpiWidth = dpiOfMetres(x);
    facts.dpiHeight = dpiOfMetres(y);
}

/// The chunk itself: libpng makes up a gamma and primaries for pictures that only say sRGB.
bool says(const PngChunkFeed &chunks, const char *type)
{
    return chunks.seen().contains(QByteArray(type));
}

void readColors(const Reader &reader, const PngChunkFeed &chunks, ImageFacts &facts,
                QVariantMap &png)
{
    int intent = 0;
    if (png_get_sRGB(reader.png, reader.info, &intent)) {
        png.insert(u"sRGBIntent"_s, intent);
        facts.isSrgb = true;
    }
    png_fixed_point gamma = 0;
    if (says(chunks, "gAMA") && png_get_gAMA_fixed(reader.png, reader.info, &gamma))
        png.insert(u"Gamma"_s, static_cast<double>(gamma) / PNG_FP_1);
    std::array<png_fixed_point, 8> c = {};
    if (says(chunks, "cHRM") && png_get_cHRM_fixed(reader.png, reader.info, &c[0], &c[1], &c[2],
                                                   &c[3], &c[4], &c[5], &c[6], &c[7])) {
        QVariantList list;
        for (const png_fixed_point number : c)
            list.append(static_cast<double>(number) / PNG_FP_1);
        png.insert(u"Chromaticities"_s, list);
    }
}

QString textOf(const png_text &text)
{
    const bool isUtf8 = text.compression >= PNG_ITXT_COMPRESSION_NONE;
    const QByteArray bytes(text.text,
                           static_cast<qsizetype>(isUtf8 ? text.itxt_length : text.text_length));
    // Plain text chunks are Latin-1 by the letter, yet many writers put UTF-8 there.
    return textOfBytes(bytes).remove(QChar(0)).trimmed();
}

void readTexts(const Reader &reader, QVariantMap &png)
{
    png_textp texts = nullptr;
    int count = 0;
    png_get_text(reader.png, reader.info, &texts, &count);
    for (int i = 0; i < count; ++i) {
        for (const TextKey &row : kTextKeys) {
            if (std::strcmp(texts[i].key, row.keyword) != 0 || png.contains(row.key))
                continue;
            if (const QString text = textOf(texts[i]); !text.isEmpty())
                png.insert(row.key, text);
        }
    }
    png_timep time = nullptr;
    if (png_get_tIME(reader.png, reader.info, &time)) {
        png.insert(u"ModificationTime"_s,
                   QString::asprintf("%04d:%02d:%02d %02d:%02d:%02d", time->year, time->month,
                                     time->day, time->hour, time->minute, time->second));
    }
}

void readBlocks(const Reader &reader, ImageFacts &facts)
{
    png_charp name = nullptr;
    png_bytep block = nullptr;
    png_uint_32 size = 0;
    int compression = 0;
    if (png_get_iCCP(reader.png, reader.info, &name, &compression, &block, &size))
        facts.profile = QByteArray(reinterpret_cast<const char *>(block), size);
    if (png_get_eXIf_1(reader.png, reader.info, &size, &block))
        facts.exif = QByteArray(reinterpret_cast<const char *>(block), size);
}

} // namespace

ImageFacts readPngHeader(ByteSource &source)
{
    ImageFacts facts;
    Reader reader;
    PngChunkFeed chunks(source);
    if (!reader.info)
        return facts;
    readInfo(reader, chunks);
    QVariantMap png;
    readPixelFacts(reader, facts, png);
    readDensity(reader, facts, png);
    readColors(reader, chunks, facts, png);
    readTexts(reader, png);
    readBlocks(reader, facts);
    if (!png.isEmpty())
        facts.dictionaries.insert(u"{PNG}"_s, png);
    return facts;
}
