// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

/// What an ICC profile calls itself; empty when it is none.
QString profileName(const QByteArray &profile);
