// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/KeyedUnarchiver.h"

#include <QByteArray>

#include <algorithm>
#include <limits>

/// Asks an archive for everything in every way, as readers of any class would, and counts what it
/// hands out. Shared by the tests with hostile files and the fuzzer.
struct ArchiveWalk
{
    bool opened = false;
    qsizetype objects = 0;
    qsizetype units = 0; ///< of text and data
    int deepest = 0;     ///< objects within each other

    /// Looks into no more objects than that, and as many values of the JSON.
    explicit ArchiveWalk(const QByteArray &file,
                         qsizetype limit = std::numeric_limits<qsizetype>::max())
        : m_limit(limit)
    {
        const TResult<KeyedUnarchiver> archive = KeyedUnarchiver::fromData(file);
        opened = static_cast<bool>(archive);
        if (!opened)
            return;
        archive.value().count();
        archive.value().forEachObject([this](const TDecoder &coder) { visit(coder); });
        count(archive.value().toJson(std::min<qsizetype>(limit, 5'000'000)).toVariant());
    }

private:
    void visit(const TDecoder &coder)
    {
        if (objects == m_limit)
            return;
        ++objects;
        deepest = std::max(deepest, ++m_depth);
        units += coder.className().size();
        for (const char *name :
             {"flag", "number", "text", "data", "date", "url", "table", "variant", "color",
              "dictionary", "parts", "part", "inner", "NSRGB", "NSColorSpace"}) {
            if (objects == m_limit)
                break;
            const QLatin1StringView key(name);
            coder.containsValueForKey(key);
            coder.decodeBool(key);
            coder.decodeInteger(key);
            coder.decodeDate(key);
            units += coder.decodeString(key).size() + coder.decodeData(key).size() +
                     coder.decodeUrl(key).size();
            count(coder.decodeVariant(key));
            if (const TStringTablePtr table = coder.decodeTable(key))
                for (const QStringList &row : *table)
                    for (const QString &cell : row)
                        units += 1 + cell.size();
            const auto visitInside = [this](const TDecoder &inside) { visit(inside); };
            coder.decodeObject(key, visitInside);
            coder.decodeDictionary(key, visitInside);
            coder.decodeArray(key, visitInside);
        }
        --m_depth;
    }

    void count(const QVariant &value)
    {
        ++units;
        if (value.typeId() == QMetaType::QVariantList) {
            const QVariantList list = value.toList();
            for (const QVariant &element : list)
                count(element);
        } else if (value.typeId() == QMetaType::QVariantMap) {
            const QVariantMap map = value.toMap();
            for (const QVariant &element : map)
                count(element);
        } else if (value.typeId() == QMetaType::QString) {
            units += value.toString().size();
        }
    }

    qsizetype m_limit;
    int m_depth = 0;
};
