// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "readers/ByteSource.h"

#include <functional>
#include <map>
#include <vector>

/// One box: its four letters, and where its contents start and end.
struct BmffBox
{
    QByteArray type;
    qint64 start = 0;
    qint64 end = 0;
};

/// Visits the boxes of a stretch in order, at most so many, until visit says false. A box that
/// claims more than the stretch holds ends with it.
void forEachBmffBox(ByteSource &source, qint64 at, qint64 end, int most,
                    const std::function<bool(const BmffBox &)> &visit);

/// The contents of the box that describes the items of a picture file; empty when there is none.
QByteArray bmffMeta(ByteSource &file);

/// One item of a picture file: a picture, a tile, a block of metadata.
struct BmffItem
{
    quint32 id = 0;
    QByteArray type;
    QByteArray contentType;
};

/// "from is ... of to", as "auxl": the alpha plane of a picture.
struct BmffReference
{
    QByteArray type;
    quint32 from = 0;
    quint32 to = 0;
};

/// The items of one "meta" box, whose contents the source holds (with its version in front). All
/// counts come from the file: what goes beyond the box or a sane number is cut off.
class BmffItems
{
public:
    explicit BmffItems(ByteSource &meta);

    quint32 primary() const { return m_primary; }
    const std::vector<BmffItem> &items() const { return m_items; }
    const std::vector<BmffReference> &references() const { return m_references; }
    std::vector<BmffBox> propertiesOf(quint32 item) const;
    /// The bytes of an item, put together from its extents in the file; empty when they are more
    /// than that or not all there.
    QByteArray contents(const BmffItem &item, ByteSource &file, qint64 most);

private:
    struct Extent
    {
        bool isInMeta = false; ///< in the meta box's own data, else in the file
        qint64 offset = 0;
        qint64 size = 0;
    };
    /// Reads numbers one behind the other.
    struct Cursor;

    void readItemInfos(const BmffBox &box);
    void readItemInfo(const BmffBox &box);
    void readLocations(const BmffBox &box);
    bool readLocation(Cursor &cursor, quint64 version, quint64 sizes);
    void readReferences(const BmffBox &box);
    void readProperties(const BmffBox &box);
    void readAssociations(const BmffBox &box);
    quint64 number(qint64 at, int bytes) const { return m_meta.big(at, bytes).value_or(0); }

    ByteSource &m_meta;
    quint32 m_primary = 0;
    BmffBox m_data;
    std::vector<BmffItem> m_items;
    std::vector<BmffReference> m_references;
    std::vector<BmffBox> m_properties;
    std::multimap<quint32, size_t> m_associations;
    std::multimap<quint32, Extent> m_extents;
};
