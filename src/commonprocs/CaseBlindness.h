// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/FileManager.h"

/// What there is to know of folders that do not tell upper from lower case. Such a disk may give
/// each spelling of a name an inode number of its own, so that these do not tell.
namespace CaseBlindness {

/// The name as such a folder compares it; two spellings of one name become the same.
QByteArray folded(const QByteArray &name);
/// Of all names that an open folder lists (those for which isListed holds), one whose case can be
/// changed is enough: true when it is also found by a spelling that is not listed.
bool isFoundBySpelling(FileManager &fileManager, int folder, const QByteArray &listedName,
                       const std::function<bool(const QByteArray &)> &isListed);
/// True for names that isFoundBySpelling can use.
bool hasSpellings(QByteArrayView name);

} // namespace CaseBlindness
