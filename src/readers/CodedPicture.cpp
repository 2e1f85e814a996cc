// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/CodedPicture.h"

#include "readers/BmffItems.h"
#include "readers/MemorySource.h"

#include <algorithm>
#include <optional>

namespace {

using Coder = CodedPicture::Coder;

constexpr qint64 kLargestPicture = qint64{64} * 1024 * 1024;
constexpr quint64 kMostPixels = quint64{64} * 1024 * 1024;
constexpr size_t kMostCandidates = 64;
constexpr size_t kMostTiles = 1024;
constexpr qint64 kLargestLayout = 64;
constexpr char kTiled[] = "grid";

struct Kind
{
    const char *type;
    const char *setup;
    Coder coder;
};
constexpr Kind kKinds[] = {{"hvc1", "hvcC", Coder::Hevc}, {"av01", "av1C", Coder::Av1}};

const Kind *kindOf(const QByteArray &type)
{
    const auto kind =
        std::ranges::find_if(kKinds, [&type](const Kind &each) { return type == each.type; });
    return kind == std::end(kKinds) ? nullptr : kind;
}

/// A picture that the file offers: an item of its own, or one of tiles.
struct Candidate
{
    const BmffItem *item = nullptr;
    int width = 0;
    int height = 0;

    int edge() const { return std::max(width, height); }
};

class Pictures
{
public:
    explicit Pictures(ByteSource &file)
        : m_file(file)
        , m_meta(bmffMeta(file))
        , m_items(m_meta)
    {
    }

    CodedPicture best(int edge)
    {
        const std::vector<Candidate> all = candidates();
        if (all.empty())
            return {};
        const auto it = std::ranges::find_if(
            all, [edge](const Candidate &candidate) { return candidate.edge() >= edge; });
        return pictureOf(it == all.end() ? all.back() : *it);
    }

private:
    /// The picture that the file is about, and its thumbnails; the smallest first.
    std::vector<Candidate> candidates()
    {
        std::vector<quint32> wanted{m_items.primary()};
        for (const BmffReference &reference : m_items.references()) {
            if (reference.type == "thmb" && reference.to == m_items.primary() &&
                wanted.size() < kMostCandidates)
                wanted.push_back(reference.from);
        }
        std::vector<Candidate> result;
        for (const quint32 id : wanted) {
            if (const Candidate candidate = candidateOf(itemOf(id)); candidate.item)
                result.push_back(candidate);
        }
        std::ranges::stable_sort(result, {}, &Candidate::edge);
        return result;
    }

    Candidate candidateOf(const BmffItem *item)
    {
        if (!item || (item->type != kTiled && !kindOf(item->type)))
            return {};
        const std::optional<BmffBox> size = propertyOf(item->id, "ispe");
        const quint64 width = size ? m_meta.big(size->start + 4, 4).value_or(0) : 0;
        const quint64 height = size ? m_meta.big(size->start + 8, 4).value_or(0) : 0;
        if (width == 0 || height == 0 || width > kMostPixels / height)
            return {};
        return {item, static_cast<int>(width), static_cast<int>(height)};
    }

    CodedPicture pictureOf(const Candidate &candidate)
    {
        CodedPicture picture;
        picture.width = candidate.width;
        picture.height = candidate.height;
        const std::vector<const BmffItem *> tiles = tilesOf(*candidate.item, picture.columns);
        const Kind *const kind = tiles.empty() ? nullptr : kindOf(tiles.front()->type);
        const auto setup = kind ? propertyOf(tiles.front()->id, kind->setup) : std::nullopt;
        if (!setup)
            return {};
        picture.coder = kind->coder;
        picture.setup = m_meta.bytes(setup->start, setup->end - setup->start);
        qint64 left = kLargestPicture;
        for (const BmffItem *tile : tiles) {
            picture.tiles.push_back(m_items.contents(*tile, m_file, left));
            left -= picture.tiles.back().size();
        }
        return picture;
    }

    /// What a picture is put together from, in its order; itself when it is not.
    std::vector<const BmffItem *> tilesOf(const BmffItem &item, int &columns)
    {
        if (item.type != kTiled)
            return {&item};
        const QByteArray layout = m_items.contents(item, m_file, kLargestLayout);
        if (layout.size() < 4)
            return {};
        columns = static_cast<uchar>(layout[3]) + 1;
        std::vector<const BmffItem *> tiles;
        for (const BmffReference &reference : m_items.references()) {
            const bool isTile = reference.type == "dimg" && reference.from == item.id;
            const BmffItem *const tile = isTile ? itemOf(reference.to) : nullptr;
            if (tile && tiles.size() < kMostTiles)
                tiles.push_back(tile);
        }
        return tiles;
    }

    const BmffItem *itemOf(quint32 id) const
    {
        const auto it = std::ranges::find(m_items.items(), id, &BmffItem::id);
        return it == m_items.items().end() ? nullptr : &*it;
    }

    std::optional<BmffBox> propertyOf(quint32 item, const char *type) const
    {
        for (const BmffBox &property : m_items.propertiesOf(item)) {
            if (property.type == type)
                return property;
        }
        return std::nullopt;
    }

    ByteSource &m_file;
    MemorySource m_meta;
    BmffItems m_items;
};

} // namespace

CodedPicture codedPicture(ByteSource &file, int edge)
{
    return Pictures(file).best(edge);
}

CodedPicture wholePicture(ByteSource &file, CodedPicture::Coder coder, qint64 width, qint64 height)
{
    CodedPicture picture;
    if (file.size() > kLargestPicture || width <= 0 || height <= 0 ||
        height > static_cast<qint64>(kMostPixels) / width)
        return picture;
    picture.coder = coder;
    picture.width = static_cast<int>(width);
    picture.height = static_cast<int>(height);
    picture.tiles.push_back(file.bytes(0, file.size()));
    return picture;
}
