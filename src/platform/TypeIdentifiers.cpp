// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/TypeIdentifiers.h"

#include "platform/TypeTable.h"

#include <algorithm>
#include <array>

namespace {

constexpr QLatin1StringView kData{"public.data"};
constexpr QLatin1StringView kTransportStream{"ts"};
constexpr qsizetype kLongestExtension = 16;
constexpr qsizetype kPacketSize = 188;
constexpr qsizetype kPacketsLookedAt = 4;
constexpr char kPacketMark = 0x47;

constexpr bool isSorted(const auto &rows, auto column)
{
    return std::ranges::adjacent_find(rows, std::ranges::greater_equal(), column) ==
           std::ranges::end(rows);
}

constexpr std::string_view asView(QLatin1StringView text)
{
    return {text.data(), static_cast<std::size_t>(text.size())};
}

constexpr auto kByExtension = [](const TypeTable::Extension &row) { return asView(row.extension); };
constexpr auto kByIdentifier = [](const TypeTable::Type &row) { return asView(row.identifier); };
static_assert(isSorted(TypeTable::kFileExtensions, kByExtension));
static_assert(isSorted(TypeTable::kFolderExtensions, kByExtension));
static_assert(isSorted(TypeTable::kTypes, kByIdentifier));

/// The row whose column equals the key; null when there is none.
auto find(const auto &rows, auto column, std::string_view key) -> decltype(std::data(rows))
{
    const auto row = std::ranges::lower_bound(rows, key, {}, column);
    return row != std::ranges::end(rows) && column(*row) == key ? &*row : nullptr;
}

QLatin1StringView lookUp(const auto &rows, QStringView extension, QLatin1StringView otherwise)
{
    if (extension.isEmpty() || extension.size() > kLongestExtension)
        return otherwise;
    std::array<char, kLongestExtension> key{};
    for (qsizetype i = 0; i < extension.size(); ++i) {
        const char16_t unit = extension[i].unicode();
        if (unit >= 0x80)
            return otherwise;
        const bool isUpper = unit >= u'A' && unit <= u'Z';
        key[static_cast<std::size_t>(i)] = static_cast<char>(isUpper ? unit + 0x20 : unit);
    }
    const std::string_view lower(key.data(), static_cast<std::size_t>(extension.size()));
    const TypeTable::Extension *const row = find(rows, kByExtension, lower);
    return row != nullptr ? row->identifier : otherwise;
}

} // namespace

QLatin1StringView TypeIdentifiers::identifierForExtension(QStringView extension, bool isFolder)
{
    return isFolder ? lookUp(TypeTable::kFolderExtensions, extension, kFolder)
                    : lookUp(TypeTable::kFileExtensions, extension, kData);
}

bool TypeIdentifiers::conformsTo(QLatin1StringView identifier, QLatin1StringView wanted)
{
    if (identifier == wanted)
        return true;
    const TypeTable::Type *const row = find(TypeTable::kTypes, kByIdentifier, asView(identifier));
    return row != nullptr && std::ranges::any_of(row->parents, [wanted](QLatin1StringView parent) {
               return !parent.isEmpty() && conformsTo(parent, wanted);
           });
}

bool TypeIdentifiers::needsContentTest(QStringView extension)
{
    return extension.compare(kTransportStream, Qt::CaseInsensitive) == 0;
}

bool TypeIdentifiers::looksLikeTransportStream(const QByteArray &head)
{
    if (head.size() <= (kPacketsLookedAt - 1) * kPacketSize)
        return false;
    for (qsizetype packet = 0; packet < kPacketsLookedAt; ++packet)
        if (head[packet * kPacketSize] != kPacketMark)
            return false;
    return true;
}
