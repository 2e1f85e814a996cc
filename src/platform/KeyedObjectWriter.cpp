// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/KeyedObjectWriter.h"

#include "platform/ArchiveValues.h"
#include "platform/KeyedArchiveFormat.h"
#include "platform/KeyedEncoder.h"

#include <QVarLengthArray>

#include <algorithm>
#include <array>

using namespace KeyedArchiveFormat;

namespace {

constexpr std::array kArrayClass{"NSArray", "NSObject"};
constexpr std::array kMutableArrayClass{"NSMutableArray", "NSArray", "NSObject"};
constexpr std::array kDictionaryClass{"NSDictionary", "NSObject"};
constexpr std::array kUrlClass{"NSURL", "NSObject"};
constexpr std::array kDateClass{"NSDate", "NSObject"};

/// Longer texts are hardly ever repeated, and keeping them would cost memory.
constexpr qsizetype kMaxSharedText = 64;
constexpr size_t kSharedTexts = 1024;
constexpr size_t kSharedNumbers = 64;
constexpr size_t kLastKeys = 2048;

/// Cheaper than a good hash, and good enough to choose a slot: names differ near their ends.
template <typename Unit>
size_t slotOf(std::span<const Unit> text, size_t slots)
{
    constexpr size_t kSample = 8;
    constexpr size_t kFactor = 1'000'003;
    size_t hash = text.size();
    for (const Unit unit : text.last(std::min(text.size(), kSample)))
        hash = hash * kFactor + static_cast<size_t>(unit);
    for (const Unit unit : text.first(std::min(text.size(), kSample / 2)))
        hash = hash * kFactor + static_cast<size_t>(unit);
    return (hash ^ (hash >> 16U)) % slots;
}

} // namespace

KeyedObjectWriter::KeyedObjectWriter(QIODevice &device)
    : m_plist(device)
    , m_plainNumbers(kSharedNumbers)
    , m_numbers(kSharedNumbers)
    , m_texts(kSharedTexts)
    , m_lastKeys(kLastKeys)
{
    m_plist.writeAscii(kNull);
    m_null = asObject();
}

KeyedObjectWriter::Ref KeyedObjectWriter::asObject()
{
    m_plist.markLast(BinaryPlistWriter::Mark::ArchiveObject);
    return m_plist.writeUid(m_objects++);
}

KeyedObjectWriter::Ref KeyedObjectWriter::plainBool(bool value)
{
    std::optional<Ref> &shared = m_plainBools[value ? 1 : 0];
    if (!shared)
        shared = m_plist.writeBool(value);
    return *shared;
}

KeyedObjectWriter::Ref KeyedObjectWriter::plainInteger(qint64 value)
{
    SharedNumber &shared = m_plainNumbers[static_cast<quint64>(value) % kSharedNumbers];
    if (!shared.ref || shared.value != value)
        shared = {value, m_plist.writeInteger(value)};
    return *shared.ref;
}

KeyedObjectWriter::Ref KeyedObjectWriter::key(QLatin1StringView key)
{
    // Keys are constants, which are found by where they stand in memory.
    SharedKey &last = m_lastKeys[reinterpret_cast<quintptr>(key.data()) % kLastKeys];
    if (last.key.size() == key.size() && !key.isEmpty() &&
        std::equal(key.begin(), key.end(), last.key.cbegin()))
        return last.ref;
    auto known = m_keys.constFind(QByteArray::fromRawData(key.data(), key.size()));
    if (known == m_keys.cend())
        known = m_keys.insert(QByteArray(key.data(), key.size()), m_plist.writeAscii(key));
    last = {known.key(), *known};
    return last.ref;
}

KeyedObjectWriter::Ref KeyedObjectWriter::text(const QString &text)
{
    if (text.size() > kMaxSharedText)
        return ownText(text);
    const std::span units(text.utf16(), static_cast<size_t>(text.size()));
    SharedText &shared = m_texts[slotOf(units, kSharedTexts)];
    if (!shared.uid || shared.text != text)
        shared = {text, ownText(text)};
    return *shared.uid;
}

KeyedObjectWriter::Ref KeyedObjectWriter::ownText(const QString &text)
{
    m_plist.writeString(text);
    return asObject();
}

KeyedObjectWriter::Ref KeyedObjectWriter::data(const QByteArray &data)
{
    m_plist.writeData(data);
    return asObject();
}

KeyedObjectWriter::Ref KeyedObjectWriter::boolean(bool value)
{
    std::optional<Ref> &shared = m_bools[value ? 1 : 0];
    if (!shared) {
        m_plist.writeBool(value);
        shared = asObject();
    }
    return *shared;
}

KeyedObjectWriter::Ref KeyedObjectWriter::integer(qint64 value)
{
    SharedNumber &shared = m_numbers[static_cast<quint64>(value) % kSharedNumbers];
    if (!shared.ref || shared.value != value) {
        m_plist.writeInteger(value);
        shared = {value, asObject()};
    }
    return *shared.ref;
}

KeyedObjectWriter::Ref KeyedObjectWriter::date(TDate date)
{
    const double seconds = ArchiveValues::secondsFromDate(date);
    QVarLengthArray<BinaryPlistWriter::Entry, 3> fields;
    fields.append({key(kDateTime), m_plist.writeReal(seconds)});
    if (ArchiveValues::dateFromSeconds(seconds) != date)
        fields.append({key(kDateNanos), m_plist.writeInteger(date.nanos)});
    return instance(fields, kDateClass);
}

KeyedObjectWriter::Ref KeyedObjectWriter::urlPart(Ref base, const QString &relative)
{
    const std::array<BinaryPlistWriter::Entry, 2> fields{
        {{key(kUrlBase), base}, {key(kUrlRelative), ownText(relative)}}};
    return instance(fields, kUrlClass);
}

KeyedObjectWriter::Ref KeyedObjectWriter::url(const QString &base, const QString &relative)
{
    return urlPart(base.isEmpty() ? m_null : baseUid(base), relative);
}

KeyedObjectWriter::Ref KeyedObjectWriter::baseUid(const QString &base)
{
    if (m_lastBase.uid && m_lastBase.text == base)
        return *m_lastBase.uid;
    auto known = m_bases.constFind(base);
    if (known == m_bases.cend())
        known = m_bases.insert(base, urlPart(m_null, base));
    m_lastBase = {base, *known};
    return *known;
}

KeyedObjectWriter::Ref KeyedObjectWriter::classUid(TArchiveClass type)
{
    for (const auto &[known, uid] : m_classes)
        if (known == type.data())
            return uid;
    QVarLengthArray<Ref, 8> names;
    for (const char *name : type)
        names.append(m_plist.writeAscii(QLatin1StringView(name)));
    const std::array<BinaryPlistWriter::Entry, 2> fields{
        {{key(kClassName), names.first()}, {key(kClasses), m_plist.writeArray(names)}}};
    m_plist.writeDictionary(fields);
    return m_classes.emplace_back(type.data(), asObject()).second;
}

KeyedObjectWriter::Ref KeyedObjectWriter::instance(std::span<const BinaryPlistWriter::Entry> fields,
                                                   TArchiveClass type)
{
    m_plist.writeDictionary(fields, BinaryPlistWriter::Entry{key(kClass), classUid(type)});
    return asObject();
}

KeyedObjectWriter::Ref KeyedObjectWriter::collection(TArchiveClass type,
                                                     std::span<const Ref> elements)
{
    const std::array<BinaryPlistWriter::Entry, 1> fields{
        {{key(kArrayObjects), m_plist.writeArray(elements)}}};
    return instance(fields, type);
}

KeyedObjectWriter::Ref KeyedObjectWriter::object(TArchiveClass type, const TEncoder::Encode &encode)
{
    if (m_depth == kMaxDepth)
        return m_null;
    ++m_depth;
    KeyedEncoder encoder(*this, KeyedEncoder::Form::Instance);
    encode(encoder);
    --m_depth;
    return instance(encoder.fields(), type);
}

KeyedObjectWriter::Ref KeyedObjectWriter::dictionary(const TEncoder::Encode &encode)
{
    if (m_depth == kMaxDepth)
        return m_null;
    ++m_depth;
    KeyedEncoder encoder(*this, KeyedEncoder::Form::Dictionary);
    encode(encoder);
    --m_depth;
    return dictionaryOf(encoder.fields());
}

KeyedObjectWriter::Ref
KeyedObjectWriter::dictionaryOf(std::span<const BinaryPlistWriter::Entry> entries)
{
    QVarLengthArray<Ref, 16> keys;
    QVarLengthArray<Ref, 16> values;
    for (const BinaryPlistWriter::Entry &field : entries) {
        keys.append(field.key);
        values.append(field.value);
    }
    const std::array<BinaryPlistWriter::Entry, 2> fields{
        {{key(kDictionaryKeys), m_plist.writeArray(keys)},
         {key(kArrayObjects), m_plist.writeArray(values)}}};
    return instance(fields, kDictionaryClass);
}

KeyedObjectWriter::Ref
KeyedObjectWriter::array(qsizetype count, const std::function<TArchiveClass(qsizetype)> &typeAt,
                         const TEncoder::EncodeElement &encode)
{
    if (m_depth == kMaxDepth)
        return m_null;
    if (count == 0) {
        if (!m_emptyArray)
            m_emptyArray = collection(kMutableArrayClass, {});
        return *m_emptyArray;
    }
    ++m_depth;
    QVarLengthArray<Ref, 16> elements;
    for (qsizetype i = 0; i < count; ++i)
        elements.append(object(typeAt(i), [&](TEncoder &coder) { encode(i, coder); }));
    --m_depth;
    return collection(kMutableArrayClass, elements);
}

KeyedObjectWriter::Ref KeyedObjectWriter::table(const TStringTable &table)
{
    QVarLengthArray<Ref, 16> rows;
    QVarLengthArray<Ref, 16> cells;
    for (const QStringList &row : table) {
        cells.clear();
        for (const QString &cell : row)
            cells.append(text(cell));
        rows.append(collection(kArrayClass, cells));
    }
    return collection(kArrayClass, rows);
}

KeyedObjectWriter::Ref KeyedObjectWriter::variant(const QVariant &value)
{
    const QVariant canonical = ArchiveValues::canonical(value);
    switch (canonical.typeId()) {
    case QMetaType::UnknownType:
        return m_null;
    case QMetaType::Bool:
        return boolean(canonical.toBool());
    case QMetaType::LongLong:
        return integer(canonical.toLongLong());
    case QMetaType::ULongLong:
        m_plist.writeUnsigned(canonical.toULongLong());
        return asObject();
    case QMetaType::Double:
        m_plist.writeReal(canonical.toDouble());
        return asObject();
    case QMetaType::QString:
        return text(canonical.toString());
    case QMetaType::QByteArray:
        return data(canonical.toByteArray());
    case QMetaType::QVariantList:
        return list(canonical.toList());
    case QMetaType::QVariantMap:
        return map(canonical.toMap());
    default:
        return date(canonical.value<TDate>());
    }
}

KeyedObjectWriter::Ref KeyedObjectWriter::list(const QVariantList &list)
{
    if (m_depth == kMaxDepth)
        return m_null;
    ++m_depth;
    QVarLengthArray<Ref, 16> elements;
    for (const QVariant &element : list)
        elements.append(variant(element));
    --m_depth;
    return collection(kArrayClass, elements);
}

KeyedObjectWriter::Ref KeyedObjectWriter::map(const QVariantMap &map)
{
    if (m_depth == kMaxDepth)
        return m_null;
    ++m_depth;
    QVarLengthArray<BinaryPlistWriter::Entry, 16> entries;
    for (auto entry = map.cbegin(); entry != map.cend(); ++entry) {
        if (!entry.value().isValid())
            continue;
        const Ref key = text(entry.key());
        entries.append({key, variant(entry.value())});
    }
    --m_depth;
    return dictionaryOf(entries);
}

void KeyedObjectWriter::appendToRoot(TArchiveClass type, const TEncoder::Encode &encode)
{
    m_depth = 1;
    object(type, encode);
    m_plist.markLast(BinaryPlistWriter::Mark::RootElement);
    m_depth = 0;
}

bool KeyedObjectWriter::finish()
{
    using Entry = BinaryPlistWriter::Entry;
    const Ref rootClass = classUid(kMutableArrayClass);
    const Ref elements = m_plist.writeArrayOfMarked(BinaryPlistWriter::Mark::RootElement);
    const std::array<Entry, 2> rootFields{
        {{key(kArrayObjects), elements}, {key(kClass), rootClass}}};
    m_plist.writeDictionary(rootFields);
    const Ref root = asObject();
    const Ref objects = m_plist.writeArrayOfMarked(BinaryPlistWriter::Mark::ArchiveObject);
    const std::array<Entry, 1> top{{{key(kRoot), root}}};
    const Ref topRef = m_plist.writeDictionary(top);
    const std::array<Entry, 4> archive{{{key(kVersionKey), m_plist.writeInteger(kVersion)},
                                        {key(kArchiverKey), m_plist.writeAscii(kArchiver)},
                                        {key(kTop), topRef},
                                        {key(kObjects), objects}}};
    return m_plist.finish(m_plist.writeDictionary(archive));
}
