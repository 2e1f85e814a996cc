// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

#include <taglib/tstringlist.h>

/// TagLib keeps UTF-16 in wide characters, surrogate pairs included.
QString fromTagLib(const TagLib::String &text);
QStringList fromTagLib(const TagLib::StringList &texts);
