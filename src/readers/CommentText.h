// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <exiv2/value.hpp>

/// A text with a character code in front: ASCII (read as UTF-8 or Latin-1, as any text), Unicode,
/// or JIS. Without its end of blanks it may still hold NULs.
QString textOfComment(const Exiv2::CommentValue &comment);
