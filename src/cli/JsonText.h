// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QStringView>

/// Appends a text as a JSON string in UTF-8, quotes included. Qt's own writer loses names that are
/// not valid UTF-8; here their bytes stand as "\udcXX" escapes, and so does every lone surrogate.
/// Control characters and the Unicode line breaks are escaped, so that one value is one line.
void appendJsonString(QByteArray &json, QStringView text);
/// The same without the quotes, for strings that are built piece by piece.
void appendJsonCharacters(QByteArray &json, QStringView text);
