// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariantList>

/// The typed layer over the application's preference store. Booleans and numbers are stored as
/// texts. Nothing reaches the disk before PrefsSyncAndFlush. May be called from any thread.

/// Opens the store; later calls do nothing.
void initPrefsWriter();

/// Null when absent or no text.
QString PrefsReadNSString(const QString &key);
/// Empty when absent or no list.
QVariantList PrefsReadArray(const QString &key);
/// 0 when absent.
qint64 PrefsReadNumber(const QString &key);
/// False when absent.
bool PrefsReadBool(const QString &key);

void PrefsWriteString(const QString &key, const QString &value);
void PrefsWriteArray(const QString &key, const QVariantList &value);
/// Stores "true" or "false".
void PrefsWriteBool(const QString &key, bool value);
/// Stores the decimal text.
void PrefsWriteNumber(const QString &key, qint64 value);
/// Writes pending changes to disk; false (and a line in the log) when that failed.
bool PrefsSyncAndFlush();
