// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/TagCategories.h"

#include "readers/TagTables.h"

#include <exception>
#include <string>
#include <unordered_map>

using namespace Qt::StringLiterals;

namespace {

struct Category
{
    QLatin1StringView name;
    std::span<const TagRow> (*rows)();
};

constexpr Category kCategories[] = {
    {"{Exif}"_L1, exifRows},
    {"{ExifAux}"_L1, exifAuxRows},
    {"{TIFF}"_L1, tiffRows},
    {"{GPS}"_L1, gpsRows},
    {"{DNG}"_L1, dngRows},
    {"{MakerNikon}"_L1, makerNikonRows},
    {"{MakerCanon}"_L1, makerCanonRows},
};

struct Target
{
    size_t category;
    const TagRow *row;
};
using Targets = std::unordered_multimap<std::string, Target>;

/// Which rows want a stored tag; made once, read by everyone.
const Targets &targets()
{
    static const Targets all = [] {
        Targets result;
        for (size_t i = 0; i < std::size(kCategories); ++i) {
            for (const TagRow &row : kCategories[i].rows())
                result.emplace(row.source, Target{i, &row});
        }
        return result;
    }();
    return all;
}

/// Keeps for every key the value of the row that stands first in its table.
class Collector
{
public:
    template <typename Data>
    void add(const Data &data)
    {
        for (const auto &datum : data) {
            const auto [first, last] = targets().equal_range(datum.key());
            for (auto it = first; it != last; ++it)
                offer(it->second, datum);
        }
    }

    QVariantMap dictionaries() const
    {
        QVariantMap result;
        for (size_t i = 0; i < std::size(kCategories); ++i) {
            QVariantMap values;
            for (auto it = m_found[i].begin(); it != m_found[i].end(); ++it)
                values.insert(it.key(), it->value);
            if (!values.isEmpty())
                result.insert(kCategories[i].name, values);
        }
        return result;
    }

private:
    struct Found
    {
        QVariant value;
        const TagRow *row = nullptr;
    };

    template <typename Datum>
    void offer(const Target &target, const Datum &datum)
    {
        QMap<QString, Found> &found = m_found[target.category];
        const auto there = found.constFind(target.row->key);
        if (there != found.constEnd() && there->row <= target.row)
            return;
        const QVariant value = valueOf(datum, target.row->shape);
        if (value.isValid())
            found.insert(target.row->key, {value, target.row});
    }

    template <typename Datum>
    static QVariant valueOf(const Datum &datum, TagShape shape)
    {
        try {
            return shapedValue(datum.value(), shape);
        } catch (const std::exception &) {
            return {}; // a value that cannot be read is as good as absent
        }
    }

    QMap<QString, Found> m_found[std::size(kCategories)];
};

} // namespace

QVariantMap tagCategories(const ImageTags &tags)
{
    Collector collector;
    collector.add(tags.exif);
    collector.add(tags.xmp);
    return collector.dictionaries();
}
