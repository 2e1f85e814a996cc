// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Uniform type identifiers: what kind of thing a file name's extension stands for, and which kinds
/// are a sort of which. One constant table; every function may be called from any thread.
namespace TypeIdentifiers {

inline constexpr QLatin1StringView kItem{"public.item"};
inline constexpr QLatin1StringView kFolder{"public.folder"};
inline constexpr QLatin1StringView kImage{"public.image"};
inline constexpr QLatin1StringView kAudio{"public.audio"};
inline constexpr QLatin1StringView kMovie{"public.movie"};
inline constexpr QLatin1StringView kAudiovisualContent{"public.audiovisual-content"};
inline constexpr QLatin1StringView kApplication{"com.apple.application"};
inline constexpr QLatin1StringView kBundle{"com.apple.bundle"};

/// Identifier for an extension (any case, no dot); kItem's data child when unknown.
QLatin1StringView identifierForExtension(QStringView extension, bool isFolder);
/// True when the identifier is the wanted one or descends from it.
bool conformsTo(QLatin1StringView identifier, QLatin1StringView wanted);
/// True when the extension says transport stream, whose content must be looked at before it counts
/// as video (four 0x47 bytes 188 apart), since TypeScript sources share the extension.
bool needsContentTest(QStringView extension);
bool looksLikeTransportStream(const QByteArray &head);

} // namespace TypeIdentifiers
