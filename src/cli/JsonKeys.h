// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

/// The first key that an object of a valid JSON text has twice, at any depth; null when there is
/// none. Qt's reader keeps the last value of such a key and says nothing.
QString repeatedJsonKey(const QByteArray &json);
