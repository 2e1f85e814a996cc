// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ImageWish.h"

namespace {

void take(QVariantMap &result, const QVariantMap &all, const QString &key)
{
    if (const auto found = all.constFind(key); found != all.cend())
        result.insert(key, *found);
}

void takeFirst(QVariantMap &result, const QVariantMap &all)
{
    if (result.isEmpty() && !all.isEmpty())
        result.insert(all.firstKey(), all.first());
}

} // namespace

QVariantMap ImageWish::of(const QVariantMap &all) const
{
    if (isAll())
        return all;
    QVariantMap result;
    for (const Tag &tag : tags) {
        if (tag.category.isEmpty()) {
            take(result, all, tag.tag);
        } else if (const auto category = all.constFind(tag.category); category != all.cend()) {
            QVariantMap wanted = result.value(tag.category).toMap();
            take(wanted, category->toMap(), tag.tag);
            result.insert(tag.category, wanted);
        }
    }
    for (auto entry = result.begin(); entry != result.end(); ++entry) {
        if (entry->typeId() != QMetaType::QVariantMap)
            continue;
        QVariantMap category = entry->toMap();
        takeFirst(category, all.value(entry.key()).toMap());
        *entry = category;
    }
    takeFirst(result, all);
    return result;
}
