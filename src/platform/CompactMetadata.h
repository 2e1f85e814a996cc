// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MetadataBlob.h"
#include "platform/TMetadata.h"

#include <optional>
#include <span>
#include <vector>

/// The metadata of one file as sorted tables of key numbers over a blob of values.
class CompactMetadata : public TMetadata
{
public:
    explicit CompactMetadata(const QVariantMap &map);

    bool isEmpty() const override;
    QVariant value(const QString &key) const override;
    bool hasDictionary(const QString &name) const override;
    QVariant value(const QString &dictionary, const QString &key) const override;
    QVariantMap toVariantMap() const override;

private:
    /// Number of a pooled key; past the pool's last number, where the blob has the key's text.
    using Key = quint32;
    struct Entry
    {
        Key key;
        MetadataBlob::Position value;
    };
    /// A named dictionary; its entries end where the next one's begin.
    struct Dictionary
    {
        Key key;
        quint32 first;
    };
    using Entries = std::span<const Entry>;

    void addAll(const QVariantMap &map, bool asDictionary);
    Key addKey(const QString &key);
    QString keyText(Key key) const;
    int compare(Key key, QStringView wanted) const;
    Entries topLevel() const;
    Entries entriesOf(const Dictionary &dictionary) const;
    const Dictionary *findDictionary(QStringView name) const;
    const Entry *find(Entries entries, QStringView key) const;
    QVariantMap toVariantMap(Entries entries) const;

    MetadataBlob m_blob;
    std::vector<Entry> m_entries;
    std::vector<Dictionary> m_dictionaries;
};
