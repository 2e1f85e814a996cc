// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

/// A stored genre as words: numbers of the ID3 list and their bracketed form ("17", "(17)",
/// "(17)Hard Rock", "(RX)") become names, each named once; other texts stay.
QString genreText(const QStringList &stored);

/// The name that stands at this place of the ID3 list, counted from 0; empty beyond its end.
QString genreName(int number);
