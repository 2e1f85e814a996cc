// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CompactMetadata.h"

#include "platform/MetadataPool.h"

#include <algorithm>

namespace {

bool isDictionary(const QVariant &value)
{
    return value.typeId() == QMetaType::QVariantMap;
}

} // namespace

CompactMetadata::CompactMetadata(const QVariantMap &map)
{
    // Top-level entries come first, then those of each dictionary. Variant maps are sorted by key,
    // so the tables are too.
    addAll(map, false);
    for (auto entry = map.cbegin(); entry != map.cend(); ++entry) {
        if (!isDictionary(entry.value()))
            continue;
        m_dictionaries.push_back({addKey(entry.key()), static_cast<quint32>(m_entries.size())});
        addAll(entry.value().toMap(), true);
    }
    m_blob.squeeze();
    m_entries.shrink_to_fit();
    m_dictionaries.shrink_to_fit();
}

void CompactMetadata::addAll(const QVariantMap &map, bool asDictionary)
{
    for (auto entry = map.cbegin(); entry != map.cend(); ++entry) {
        if (!entry.value().isValid() || (!asDictionary && isDictionary(entry.value())))
            continue;
        const Key key = addKey(entry.key());
        m_entries.push_back({key, m_blob.append(entry.value())});
    }
}

CompactMetadata::Key CompactMetadata::addKey(const QString &key)
{
    const std::optional<quint32> number = MetadataPool::shared().numberOfKey(key);
    return number ? *number : MetadataPool::kMaxKeys + m_blob.appendText(key);
}

QString CompactMetadata::keyText(Key key) const
{
    return key < MetadataPool::kMaxKeys ? MetadataPool::shared().key(key).toString()
                                        : m_blob.value(key - MetadataPool::kMaxKeys).toString();
}

int CompactMetadata::compare(Key key, QStringView wanted) const
{
    // No text is made for a pooled key, so that threads do not fight over its reference count.
    return key < MetadataPool::kMaxKeys ? MetadataPool::shared().key(key).compare(wanted)
                                        : QStringView(keyText(key)).compare(wanted);
}

CompactMetadata::Entries CompactMetadata::topLevel() const
{
    const size_t end = m_dictionaries.empty() ? m_entries.size() : m_dictionaries.front().first;
    return Entries(m_entries).first(end);
}

CompactMetadata::Entries CompactMetadata::entriesOf(const Dictionary &dictionary) const
{
    const bool last = &dictionary == &m_dictionaries.back();
    const size_t end = last ? m_entries.size() : (&dictionary + 1)->first;
    return Entries(m_entries).subspan(dictionary.first, end - dictionary.first);
}

const CompactMetadata::Dictionary *CompactMetadata::findDictionary(QStringView name) const
{
    const auto found = std::lower_bound(m_dictionaries.begin(), m_dictionaries.end(), name,
                                        [this](const Dictionary &dictionary, QStringView wanted) {
                                            return compare(dictionary.key, wanted) < 0;
                                        });
    const bool there = found != m_dictionaries.end() && compare(found->key, name) == 0;
    return there ? &*found : nullptr;
}

const CompactMetadata::Entry *CompactMetadata::find(Entries entries, QStringView key) const
{
    const auto found = std::lower_bound(
        entries.begin(), entries.end(), key,
        [this](const Entry &entry, QStringView wanted) { return compare(entry.key, wanted) < 0; });
    return found != entries.end() && compare(found->key, key) == 0 ? &*found : nullptr;
}

bool CompactMetadata::isEmpty() const
{
    return m_entries.empty() && m_dictionaries.empty();
}

QVariant CompactMetadata::value(const QString &key) const
{
    if (const Entry *entry = find(topLevel(), key))
        return m_blob.value(entry->value);
    if (const Dictionary *dictionary = findDictionary(key))
        return toVariantMap(entriesOf(*dictionary));
    return {};
}

bool CompactMetadata::hasDictionary(const QString &name) const
{
    return findDictionary(name) != nullptr;
}

QVariant CompactMetadata::value(const QString &dictionary, const QString &key) const
{
    const Dictionary *found = findDictionary(dictionary);
    const Entry *entry = found != nullptr ? find(entriesOf(*found), key) : nullptr;
    return entry != nullptr ? m_blob.value(entry->value) : QVariant();
}

QVariantMap CompactMetadata::toVariantMap(Entries entries) const
{
    QVariantMap map;
    for (const Entry &entry : entries)
        map.insert(keyText(entry.key), m_blob.value(entry.value));
    return map;
}

QVariantMap CompactMetadata::toVariantMap() const
{
    QVariantMap map = toVariantMap(topLevel());
    for (const Dictionary &dictionary : m_dictionaries)
        map.insert(keyText(dictionary.key), toVariantMap(entriesOf(dictionary)));
    return map;
}
