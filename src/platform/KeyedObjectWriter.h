// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/BinaryPlistWriter.h"
#include "platform/TCoder.h"

#include <QByteArray>
#include <QHash>

#include <optional>
#include <span>
#include <vector>

/// Writes the objects of one keyed archive. Every object function appends an object, or finds the
/// equal one that was written before, and gives the reference of the UID that stands for it; the
/// plain functions give values that stand inline under a key. Used by KeyedArchiver and
/// KeyedEncoder.
class KeyedObjectWriter
{
public:
    using Ref = BinaryPlistWriter::Ref;

    explicit KeyedObjectWriter(QIODevice &device);
    KeyedObjectWriter(const KeyedObjectWriter &) = delete;
    KeyedObjectWriter &operator=(const KeyedObjectWriter &) = delete;

    Ref plainBool(bool value);
    Ref plainInteger(qint64 value);
    /// The text that names a field.
    Ref key(QLatin1StringView key);

    Ref text(const QString &text);
    Ref data(const QByteArray &data);
    Ref date(TDate date);
    Ref url(const QString &base, const QString &relative);
    Ref table(const TStringTable &table);
    Ref variant(const QVariant &value);
    Ref boolean(bool value);
    Ref integer(qint64 value);
    Ref object(TArchiveClass type, const TEncoder::Encode &encode);
    Ref dictionary(const TEncoder::Encode &encode);
    Ref array(qsizetype count, const std::function<TArchiveClass(qsizetype)> &typeAt,
              const TEncoder::EncodeElement &encode);

    void appendToRoot(TArchiveClass type, const TEncoder::Encode &encode);
    [[nodiscard]] bool finish();

private:
    struct SharedText
    {
        QString text;
        std::optional<Ref> uid;
    };
    struct SharedKey
    {
        QByteArray key;
        Ref ref = 0;
    };
    struct SharedNumber
    {
        qint64 value = 0;
        std::optional<Ref> ref;
    };

    /// Makes the object written last a member of the archive; gives its UID.
    Ref asObject();
    /// A text that is not expected again, such as the name of a file.
    Ref ownText(const QString &text);
    Ref instance(std::span<const BinaryPlistWriter::Entry> fields, TArchiveClass type);
    Ref classUid(TArchiveClass type);
    Ref baseUid(const QString &base);
    Ref urlPart(Ref base, const QString &relative);
    Ref collection(TArchiveClass type, std::span<const Ref> elements);
    Ref dictionaryOf(std::span<const BinaryPlistWriter::Entry> entries);
    Ref list(const QVariantList &list);
    Ref map(const QVariantMap &map);

    BinaryPlistWriter m_plist;
    quint32 m_objects = 0;
    int m_depth = 0;
    Ref m_null;
    std::optional<Ref> m_plainBools[2];
    std::optional<Ref> m_bools[2];
    std::optional<Ref> m_emptyArray;
    std::vector<SharedNumber> m_plainNumbers; ///< by a part of the number; the last one stays
    std::vector<SharedNumber> m_numbers;
    std::vector<SharedText> m_texts;   ///< by a part of the text's hash; the last one stays
    std::vector<SharedKey> m_lastKeys; ///< by address, in front of the table of all keys
    QHash<QByteArray, Ref> m_keys;
    std::vector<std::pair<const void *, Ref>> m_classes; ///< few, the usual ones first
    QHash<QString, Ref> m_bases;
    SharedText m_lastBase; ///< most files are in the folder of the file before
};
