// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <QString>

/// Text whose character set nobody states: UTF-8 when it is that, Latin-1 otherwise; up to the
/// first NUL.
QString textOfBytes(QByteArrayView bytes);
