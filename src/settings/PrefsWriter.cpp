// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/PrefsWriter.h"

#include "settings/PreferenceStore.h"

using namespace Qt::StringLiterals;

void initPrefsWriter()
{
    PreferenceStore::application();
}

QString PrefsReadNSString(const QString &key)
{
    const QVariant value = PreferenceStore::application()->value(key);
    return value.typeId() == QMetaType::QString ? value.toString() : QString();
}

QVariantList PrefsReadArray(const QString &key)
{
    const QVariant value = PreferenceStore::application()->value(key);
    return value.typeId() == QMetaType::QVariantList ? value.toList() : QVariantList();
}

qint64 PrefsReadNumber(const QString &key)
{
    return PreferenceStore::integerValue(PreferenceStore::application()->value(key));
}

bool PrefsReadBool(const QString &key)
{
    return PreferenceStore::boolValue(PreferenceStore::application()->value(key));
}

void PrefsWriteString(const QString &key, const QString &value)
{
    PreferenceStore::application()->setValue(key, value.isNull() ? QVariant() : QVariant(value));
}

void PrefsWriteArray(const QString &key, const QVariantList &value)
{
    PreferenceStore::application()->setValue(key, value);
}

void PrefsWriteBool(const QString &key, bool value)
{
    PrefsWriteString(key, value ? u"true"_s : u"false"_s);
}

void PrefsWriteNumber(const QString &key, qint64 value)
{
    PrefsWriteString(key, QString::number(value));
}

bool PrefsSyncAndFlush()
{
    return PreferenceStore::application()->sync();
}
