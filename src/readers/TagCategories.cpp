// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/TagCategories.h"

#include "readers/TagTables.h"

#include <QHash>

#include <algorithm>
#include <array>
#include <exception>
#include <string>
#include <unordered_map>
#include <vector>

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

/// The place of one key's value among all.
struct Slot
{
    size_t category;
    QString key;
};

struct Target
{
    size_t slot;
    size_t rank; ///< the lower one wins
    TagShape shape;
};

/// Which rows want a stored tag, and the slots that they fill; made once, read by everyone.
class Table
{
public:
    static const Table &instance()
    {
        static const Table table;
        return table;
    }

    const std::vector<Slot> &slotsOfAll() const { return m_slots; }
    auto targetsOf(const std::string &source) const { return m_targets.equal_range(source); }

private:
    Table()
    {
        for (size_t i = 0; i < std::size(kCategories); ++i) {
            QHash<QString, size_t> places;
            size_t rank = 0;
            for (const TagRow &row : kCategories[i].rows()) {
                const QString key = row.key;
                if (!places.contains(key)) {
                    places.insert(key, m_slots.size());
                    m_slots.push_back({i, key});
                }
                m_targets.emplace(row.source, Target{places.value(key), rank++, row.shape});
            }
        }
    }

    std::vector<Slot> m_slots;
    std::unordered_multimap<std::string, Target> m_targets;
};

/// Keeps for every key the value of the row that stands first in its table.
class Collector
{
public:
    explicit Collector(const ImageWish &wish)
        : m_wanted(m_found.size(), wish.isAll())
    {
        for (size_t i = 0; i < m_wanted.size() && !wish.isAll(); ++i) {
            const Slot &slot = Table::instance().slotsOfAll()[i];
            m_wanted[i] =
                std::any_of(wish.tags.begin(), wish.tags.end(), [&slot](const ImageWish::Tag &tag) {
                    return tag.tag == slot.key && tag.category == kCategories[slot.category].name;
                });
        }
    }

    template <typename Data>
    void add(const Data &data)
    {
        for (const auto &datum : data) {
            const auto [first, last] = Table::instance().targetsOf(datum.key());
            for (auto it = first; it != last; ++it)
                offer(it->second, datum);
        }
    }

    /// Adds what nothing has told yet, however late its row stands.
    void addMissing(const Exiv2::ExifData &exif)
    {
        for (Found &found : m_found) {
            if (found.value.isValid())
                found.rank = 0;
        }
        add(exif);
    }

    QVariantMap dictionaries() const
    {
        QVariantMap dictionaries[std::size(kCategories)];
        for (size_t i = 0; i < m_found.size(); ++i) {
            const Slot &slot = Table::instance().slotsOfAll()[i];
            if (m_found[i].value.isValid())
                dictionaries[slot.category].insert(slot.key, m_found[i].value);
        }
        QVariantMap result;
        for (size_t i = 0; i < std::size(kCategories); ++i) {
            if (!dictionaries[i].isEmpty())
                result.insert(kCategories[i].name, dictionaries[i]);
        }
        return result;
    }

private:
    struct Found
    {
        QVariant value;
        size_t rank = 0;
    };

    template <typename Datum>
    void offer(const Target &target, const Datum &datum)
    {
        const size_t category = Table::instance().slotsOfAll()[target.slot].category;
        if (!m_wanted[target.slot] && m_shows[category])
            return;
        Found &found = m_found[target.slot];
        if (found.value.isValid() && found.rank <= target.rank)
            return;
        const QVariant value = valueOf(datum, target.shape);
        if (!value.isValid())
            return;
        found = {value, target.rank};
        m_shows[category] = true;
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

    std::vector<Found> m_found = std::vector<Found>(Table::instance().slotsOfAll().size());
    std::vector<bool> m_wanted;                         ///< by slot
    std::array<bool, std::size(kCategories)> m_shows{}; ///< by category: it has something
};

} // namespace

QVariantMap tagCategories(const ImageTags &tags, const ImageWish &wish)
{
    Collector collector(wish);
    collector.add(tags.exif);
    collector.add(tags.xmp);
    collector.addMissing(tags.exifOfXmp);
    return collector.dictionaries();
}
