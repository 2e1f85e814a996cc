// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QVariantMap>

/// Settings with registered defaults, in the same store as the preferences but in their own value
/// forms: numbers are numbers, booleans are booleans. May be called from any thread.
namespace UserDefaults {

/// What a key reads as while nothing is stored under it; lasts as long as the process.
void registerDefault(const QString &key, const QVariant &value);
/// The stored value, else the registered default, else invalid.
QVariant valueForKey(const QString &key);
qint64 integerForKey(const QString &key);
bool boolForKey(const QString &key);
/// Stores and writes to disk at once. An invalid value removes the key. Values may be texts,
/// numbers, booleans, and lists and maps of these.
void setValue(const QString &key, const QVariant &value);
void setValues(const QVariantMap &values);
/// Forgets the registered defaults, so that a test starts as a process does.
void resetForTests();

} // namespace UserDefaults
