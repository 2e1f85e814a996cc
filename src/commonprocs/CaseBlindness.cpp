// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/CaseBlindness.h"

#include "commonprocs/ByteNames.h"

#include <algorithm>

namespace {

constexpr char kCaseBit = 0x20;

bool isLetter(char byte)
{
    return (byte | kCaseBit) >= 'a' && (byte | kCaseBit) <= 'z';
}

} // namespace

namespace CaseBlindness {

QByteArray folded(const QByteArray &name)
{
    return ByteNames::toBytes(ByteNames::fromBytes(name).toCaseFolded());
}

bool hasSpellings(QByteArrayView name)
{
    return std::ranges::any_of(name, isLetter);
}

bool isFoundBySpelling(FileManager &fileManager, int folder, const QByteArray &listedName,
                       const std::function<bool(const QByteArray &)> &isListed)
{
    QByteArray other = listedName;
    const auto letter = std::ranges::find_if(other, isLetter);
    if (letter == other.end())
        return false;
    *letter = static_cast<char>(*letter ^ kCaseBit);
    TFileStatus ignored;
    return !isListed(other) && fileManager.status(folder, other, false, ignored) == 0;
}

} // namespace CaseBlindness
