// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

/// What tells this boot of the machine from every other; empty when the system does not say.
QByteArray currentBootId();
