// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/UserDefaults.h"

#include "settings/PreferenceStore.h"

#include <mutex>

namespace {

struct Registered
{
    std::mutex mutex;
    QVariantMap values;
};

Registered &registered()
{
    static Registered instance;
    return instance;
}

} // namespace

namespace UserDefaults {

void registerDefault(const QString &key, const QVariant &value)
{
    const std::scoped_lock lock(registered().mutex);
    registered().values.insert(key, value);
}

QVariant valueForKey(const QString &key)
{
    QVariant stored = PreferenceStore::application()->value(key);
    if (stored.isValid())
        return stored;
    const std::scoped_lock lock(registered().mutex);
    return registered().values.value(key);
}

qint64 integerForKey(const QString &key)
{
    return PreferenceStore::integerValue(valueForKey(key));
}

bool boolForKey(const QString &key)
{
    return PreferenceStore::boolValue(valueForKey(key));
}

void setValue(const QString &key, const QVariant &value)
{
    setValues({{key, value}});
}

void setValues(const QVariantMap &values)
{
    const auto store = PreferenceStore::application();
    for (auto it = values.begin(); it != values.end(); ++it)
        store->setValue(it.key(), it.value());
    store->sync();
}

void resetForTests()
{
    const std::scoped_lock lock(registered().mutex);
    registered().values.clear();
}

} // namespace UserDefaults
