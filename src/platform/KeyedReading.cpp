// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/KeyedReading.h"

#include "platform/ArchiveValues.h"
#include "platform/KeyedArchiveFormat.h"

#include <algorithm>
#include <array>
#include <utility>

using namespace KeyedArchiveFormat;

namespace {

/// An archive without shared objects needs about half of this; short files may need a little more,
/// because their references are shorter than the least amounts below.
constexpr quint64 kWorkPerByte = 3;
constexpr quint64 kLeastWork = quint64{2} << 20U;
/// Percent-encoded URLs and their shared bases make the most text from the fewest bytes.
constexpr quint64 kTextPerByte = 10;
constexpr quint64 kLeastText = quint64{16} << 20U;
constexpr quint64 kObjectWork = 64;
constexpr quint64 kElementWork = 4;

constexpr size_t kClassSlots = 64;
constexpr size_t kTextSlots = 1024;
constexpr quint64 kMaxSharedText = 64;
constexpr int kMaxBases = 8;

constexpr std::array<std::pair<QLatin1StringView, KeyedReading::Kind>, 13> kKinds{{
    {QLatin1StringView("NSArray"), KeyedReading::Kind::Array},
    {QLatin1StringView("NSMutableArray"), KeyedReading::Kind::Array},
    {QLatin1StringView("NSDictionary"), KeyedReading::Kind::Dictionary},
    {QLatin1StringView("NSMutableDictionary"), KeyedReading::Kind::Dictionary},
    {QLatin1StringView("NSDate"), KeyedReading::Kind::Date},
    {QLatin1StringView("NSURL"), KeyedReading::Kind::Url},
    {QLatin1StringView("NSString"), KeyedReading::Kind::Text},
    {QLatin1StringView("NSMutableString"), KeyedReading::Kind::Text},
    {QLatin1StringView("NSData"), KeyedReading::Kind::Data},
    {QLatin1StringView("NSMutableData"), KeyedReading::Kind::Data},
    {QLatin1StringView("NSNull"), KeyedReading::Kind::None},
    {QLatin1StringView("NSObject"), KeyedReading::Kind::None},
    {QLatin1StringView(""), KeyedReading::Kind::None},
}};

KeyedReading::Kind kindOfClass(const QString &name)
{
    const auto *known = std::find_if(kKinds.begin(), kKinds.end(),
                                     [&name](const auto &kind) { return kind.first == name; });
    return known == kKinds.end() ? KeyedReading::Kind::Object : known->second;
}

} // namespace

KeyedReading::KeyedReading(const KeyedArchiveFile &file)
    : m_file(file)
    , m_workLeft(kWorkPerByte * file.plist().fileSize() + kLeastWork)
    , m_textLeft(kTextPerByte * file.plist().fileSize() + kLeastText)
    , m_classes(kClassSlots)
    , m_texts(kTextSlots)
{
}

bool KeyedReading::work(quint64 amount)
{
    if (m_spent || amount > m_workLeft) {
        m_spent = true;
        return false;
    }
    m_workLeft -= amount;
    return true;
}

const KeyedReading::ClassInfo &KeyedReading::classOf(const PlistItem &instance)
{
    static const ClassInfo kNoClass;
    // Writers put the class first or last.
    quint64 hint = instance.count - 1;
    const PlistItem uid = m_file.plist().find(instance, kClass, hint);
    if (uid.type != PlistItem::Type::Uid)
        return kNoClass;
    ClassInfo &info = m_classes[uid.ref % kClassSlots];
    if (info.ref == uid.ref)
        return info;
    const PlistItem table = m_file.resolved(uid);
    if (table.type != PlistItem::Type::Dictionary || table.count == 0 ||
        !work(std::max(kObjectWork, m_file.plist().bodySize(table))))
        return kNoClass;
    const QString name = plainText(field(table, kClassName));
    info = {uid.ref, name, kindOfClass(name)};
    return info;
}

KeyedReading::Kind KeyedReading::kind(const PlistItem &item)
{
    if (item.type != PlistItem::Type::Dictionary || item.count == 0 ||
        !work(std::max(kObjectWork, m_file.plist().bodySize(item))))
        return Kind::None;
    return item.count <= kMaxFields ? classOf(item).kind : Kind::None;
}

QString KeyedReading::className(const PlistItem &object)
{
    return classOf(object).name;
}

PlistItem KeyedReading::field(const PlistItem &instance, QLatin1StringView key, quint64 &hint) const
{
    return m_file.resolved(m_file.plist().find(instance, key, hint));
}

PlistItem KeyedReading::field(const PlistItem &instance, QLatin1StringView key) const
{
    quint64 hint = 0;
    return field(instance, key, hint);
}

PlistItem KeyedReading::references(const PlistItem &object, QLatin1StringView key)
{
    const PlistItem array = field(object, key);
    if (array.type == PlistItem::Type::Array &&
        work(std::max(kElementWork * array.count, m_file.plist().bodySize(array))))
        return array;
    PlistItem none;
    none.type = PlistItem::Type::Array;
    return none;
}

PlistItem KeyedReading::object(const PlistItem &references, quint64 index) const
{
    return m_file.resolved(m_file.plist().element(references, index));
}

qint64 KeyedReading::integer(const PlistItem &item)
{
    if (item.type == PlistItem::Type::Integer || item.type == PlistItem::Type::Bool)
        return item.integer;
    return item.type == PlistItem::Type::Real ? ArchiveValues::integerFromReal(item.real) : 0;
}

QString KeyedReading::plainText(const PlistItem &item)
{
    if (!item.isText())
        return {};
    SharedText &shared = m_texts[item.ref % kTextSlots];
    if (shared.ref == item.ref)
        return shared.text;
    if (m_spent || item.count > m_textLeft) {
        m_spent = true;
        return {};
    }
    m_textLeft -= item.count;
    QString text = BinaryPlistReader::text(item);
    if (item.count <= kMaxSharedText)
        shared = {item.ref, text};
    return text;
}

QString KeyedReading::text(const PlistItem &item)
{
    const bool wrapped = kind(item) == Kind::Text;
    return plainText(wrapped ? field(item, kStringText) : item);
}

QByteArray KeyedReading::data(const PlistItem &item)
{
    const bool wrapped = kind(item) == Kind::Data;
    const PlistItem bytes = wrapped ? field(item, kDataBytes) : item;
    if (bytes.type != PlistItem::Type::Data || !work(bytes.count))
        return {};
    const auto *start = reinterpret_cast<const char *>(bytes.body);
    return {start, static_cast<qsizetype>(bytes.count)};
}

TDate KeyedReading::date(const PlistItem &item)
{
    if (item.type == PlistItem::Type::Date)
        return ArchiveValues::dateFromSeconds(item.real);
    if (kind(item) != Kind::Date)
        return {};
    const PlistItem time = field(item, kDateTime);
    if (time.type != PlistItem::Type::Real && time.type != PlistItem::Type::Integer)
        return {};
    const TDate rounded = ArchiveValues::dateFromSeconds(
        time.type == PlistItem::Type::Real ? time.real : static_cast<double>(time.integer));
    const TDate exact{integer(field(item, kDateNanos))};
    // The seconds count; the nanoseconds only say more of the same.
    const bool same = exact.isSet() && ArchiveValues::secondsFromDate(exact) ==
                                           ArchiveValues::secondsFromDate(rounded);
    return rounded.isSet() && same ? exact : rounded;
}

QString KeyedReading::url(const PlistItem &item)
{
    if (kind(item) != Kind::Url)
        return {};
    quint64 hint = 0;
    const PlistItem base = field(item, kUrlBase, hint);
    const QString relative = plainText(field(item, kUrlRelative, hint));
    if (relative.isNull())
        return {};
    QString url = ArchiveValues::joinedUrl(baseUrl(base), relative);
    const auto size = static_cast<quint64>(url.size());
    if (m_spent || size > m_textLeft) {
        m_spent = true;
        return {};
    }
    m_textLeft -= size;
    return url;
}

QString KeyedReading::baseUrl(const PlistItem &base)
{
    if (base.type != PlistItem::Type::Dictionary)
        return {};
    if (m_base.ref == base.ref)
        return m_base.text;
    QString url;
    PlistItem part = base;
    for (int i = 0; i < kMaxBases && kind(part) == Kind::Url; ++i) {
        url = ArchiveValues::joinedUrl(plainText(field(part, kUrlRelative)), url);
        part = field(part, kUrlBase);
    }
    m_base = {base.ref, url};
    return url;
}

TStringTablePtr KeyedReading::table(const PlistItem &item)
{
    if (kind(item) != Kind::Array)
        return nullptr;
    TStringTable table;
    const PlistItem rows = references(item, kArrayObjects);
    for (quint64 i = 0; i < rows.count && !m_spent; ++i) {
        const PlistItem row = object(rows, i);
        QStringList texts;
        if (kind(row) == Kind::Array) {
            const PlistItem cells = references(row, kArrayObjects);
            texts.reserve(static_cast<qsizetype>(cells.count));
            for (quint64 j = 0; j < cells.count && !m_spent; ++j)
                texts.append(text(object(cells, j)));
        }
        table.push_back(std::move(texts));
    }
    return newStringTable(std::move(table));
}

QVariant KeyedReading::variant(const PlistItem &item, int depth)
{
    switch (item.type) {
    case PlistItem::Type::Bool:
        return item.integer != 0;
    case PlistItem::Type::Integer:
        return item.integer;
    case PlistItem::Type::Unsigned:
        return static_cast<quint64>(item.integer);
    case PlistItem::Type::Real:
        return item.real;
    case PlistItem::Type::Ascii:
    case PlistItem::Type::Utf16: {
        const QString text = plainText(item);
        return text.isNull() ? QVariant() : QVariant(text);
    }
    case PlistItem::Type::Data:
        return data(item);
    case PlistItem::Type::Date:
        return QVariant::fromValue(date(item));
    case PlistItem::Type::Dictionary:
        break;
    default:
        return {};
    }
    switch (kind(item)) {
    case Kind::Array:
        return depth <= kMaxDepth ? QVariant(list(item, depth)) : QVariant();
    case Kind::Dictionary:
        return depth <= kMaxDepth ? QVariant(map(item, depth)) : QVariant();
    case Kind::Date:
        return QVariant::fromValue(date(item));
    case Kind::Url:
        return url(item);
    case Kind::Text:
        return text(item);
    case Kind::Data:
        return data(item);
    case Kind::None:
    case Kind::Object:
        break;
    }
    return {};
}

QVariantList KeyedReading::list(const PlistItem &item, int depth)
{
    QVariantList list;
    const PlistItem elements = references(item, kArrayObjects);
    list.reserve(static_cast<qsizetype>(elements.count));
    for (quint64 i = 0; i < elements.count && !m_spent; ++i)
        list.append(variant(object(elements, i), depth + 1));
    return list;
}

QVariantMap KeyedReading::map(const PlistItem &item, int depth)
{
    QVariantMap map;
    const PlistItem keys = references(item, kDictionaryKeys);
    const PlistItem values = references(item, kArrayObjects);
    for (quint64 i = 0; i < std::min(keys.count, values.count) && !m_spent; ++i) {
        const QString key = text(object(keys, i));
        const QVariant value = variant(object(values, i), depth + 1);
        if (!key.isNull() && value.isValid())
            map.insert(key, value);
    }
    return map;
}
