// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPalette>
#include <QTextDocument>

/// How the pages of the manual look in a window. The document's base is kBase. Main thread only.
namespace HelpPage {

inline constexpr QLatin1StringView kFolder{":/help/manual/"};
inline constexpr QLatin1StringView kBase{"qrc:/help/manual/"};
inline constexpr qreal kMargin = 20; ///< around the text
inline constexpr qreal kBelowHeading = 6;

/// Spaces lines out, draws tables, and makes plain text of links that lead out of the manual.
void polish(QTextDocument &document, const QPalette &palette);
/// Makes pictures as wide as the page, as long as that shows more of them, in the palette's scheme
/// and as sharp as a screen of that pixel ratio can show them.
void fitPictures(QTextDocument &document, int pageWidth, const QPalette &palette, qreal ratio);

} // namespace HelpPage
