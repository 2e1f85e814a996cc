// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/controls/Theme.h"

#include "ui/controls/TavrinStyle.h"

#include <QApplication>
#include <QHash>
#include <QStyleFactory>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr double kReadable = 4.5;
/// More than are in use at a time; widgets mostly share theirs.
constexpr qsizetype kMostPalettes = 64;
/// What a desktop may ask of its users, in what is of use and in what is not.
constexpr double kLeast = 3;
constexpr double kLeastDisabled = 2;
constexpr std::array<std::pair<QPalette::ColorRole, QPalette::ColorRole>, 5> kInks{{
    {QPalette::WindowText, QPalette::Window},
    {QPalette::Text, QPalette::Base},
    {QPalette::ButtonText, QPalette::Button},
    {QPalette::HighlightedText, QPalette::Highlight},
    {QPalette::ToolTipText, QPalette::ToolTipBase},
}};
constexpr QRgb kDarkInk = 0xff1c1f23;
constexpr QRgb kLightInk = 0xfffdfdfd;

/// What the few named colours of a scheme are where the desktop has none.
struct Scheme
{
    QRgb window, card, stripe, button, ink, muted, accent;
};
constexpr Scheme kLight{0xfff3f4f6, 0xffffffff, 0xfff7f8fa, 0xffffffff,
                        0xff1f2328, 0xff5f6672, 0xff2270c8};
constexpr Scheme kDark{0xff1f2226, 0xff292c31, 0xff2d3036, 0xff31353b,
                       0xffe8eaed, 0xffa0a6ae, 0xff2b74cc};

Theme::Scheme &currentScheme()
{
    static Theme::Scheme scheme = Theme::Scheme::Desktop;
    return scheme;
}

QColor mixed(const QColor &from, const QColor &to, double part)
{
    const auto channel = [part](int a, int b) {
        return static_cast<int>(std::lround(a + (b - a) * part));
    };
    return {channel(from.red(), to.red()), channel(from.green(), to.green()),
            channel(from.blue(), to.blue())};
}

double luminance(const QColor &color)
{
    const auto linear = [](double channel) {
        return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

/// The color, moved towards a better readable one until it can be read on all of the surfaces.
QColor readable(QColor color, const QColor &towards, std::initializer_list<QColor> surfaces)
{
    const auto isReadable = [&] {
        return std::all_of(surfaces.begin(), surfaces.end(), [&](const QColor &surface) {
            return Theme::contrast(color, surface) >= kReadable;
        });
    };
    for (int step = 0; step < 20 && !isReadable(); ++step)
        color = mixed(color, towards, 0.12);
    return color;
}

QPalette paletteOf(const Scheme &scheme)
{
    const QColor ink = QColor::fromRgb(scheme.ink);
    QPalette palette(QColor::fromRgb(scheme.button), QColor::fromRgb(scheme.window));
    const auto set = [&](QPalette::ColorRole role, QRgb color) {
        palette.setColor(role, QColor::fromRgb(color));
    };
    set(QPalette::Window, scheme.window);
    set(QPalette::Base, scheme.card);
    set(QPalette::AlternateBase, scheme.stripe);
    set(QPalette::Button, scheme.button);
    set(QPalette::ToolTipBase, scheme.card);
    set(QPalette::Highlight, scheme.accent);
    set(QPalette::Link, scheme.accent);
    set(QPalette::HighlightedText, kLightInk);
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText})
        palette.setColor(role, ink);
    set(QPalette::PlaceholderText, scheme.muted);
    const QColor faint = mixed(ink, QColor::fromRgb(scheme.card), 0.55);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, faint);
    palette.setColor(QPalette::Disabled, QPalette::Highlight,
                     mixed(QColor::fromRgb(scheme.accent), QColor::fromRgb(scheme.card), 0.5));
    return palette;
}

/// True where no desktop has given the application a look of its own.
bool isPlainDesktop(const QPalette &desktop)
{
    const std::unique_ptr<QStyle> fusion(QStyleFactory::create(u"fusion"_s));
    return fusion &&
           desktop.color(QPalette::Window) == fusion->standardPalette().color(QPalette::Window);
}

/// Quiet, but not where the palette asks for all the contrast there is.
double borderStrength(const ThemeColors &colors)
{
    constexpr double kFull = 19; // yellow on black is one of them
    constexpr double kStrong = 0.6;
    if (Theme::contrast(colors.window, colors.ink) > kFull &&
        Theme::contrast(colors.card, colors.ink) > kFull)
        return kStrong;
    return colors.isDark ? 0.14 : 0.13;
}

ThemeColors colorsOf(const QPalette &palette)
{
    ThemeColors colors;
    colors.window = palette.color(QPalette::Active, QPalette::Window);
    colors.card = palette.color(QPalette::Active, QPalette::Base);
    colors.stripe = palette.color(QPalette::Active, QPalette::AlternateBase);
    colors.ink = palette.color(QPalette::Active, QPalette::WindowText);
    colors.isDark = luminance(colors.window) < 0.18;
    const auto legible = [&](const QColor &color) {
        return readable(color, colors.ink, {colors.window, colors.card, colors.stripe});
    };
    colors.border = mixed(colors.card, colors.ink, borderStrength(colors));
    colors.field = mixed(colors.card, colors.ink, colors.isDark ? 0.04 : 0.035);
    colors.muted = legible(mixed(colors.ink, colors.window, colors.isDark ? 0.36 : 0.33));
    colors.accent = palette.color(QPalette::Active, QPalette::Highlight);
    colors.accentInk = palette.color(QPalette::Active, QPalette::HighlightedText);
    if (Theme::contrast(colors.accent, colors.accentInk) < kReadable)
        colors.accentInk = Theme::inkOn(colors.accent);
    colors.selection = mixed(colors.card, colors.accent, colors.isDark ? 0.38 : 0.17);
    colors.good = legible(colors.isDark ? QColor(0x57, 0xc7, 0x84) : QColor(0x2a, 0x8f, 0x4f));
    colors.warning = colors.isDark ? QColor(0xf2, 0xb6, 0x3c) : QColor(0xe8, 0xa3, 0x17);
    colors.critical = colors.isDark ? QColor(0xe0, 0x4f, 0x4f) : QColor(0xd1, 0x3b, 0x3b);
    colors.extension = readable(colors.isDark ? QColor(0xff, 0x7b, 0x72) : QColor(0xc6, 0x28, 0x28),
                                colors.ink, {colors.card, colors.stripe, colors.selection});
    return colors;
}

} // namespace

ThemeColors ThemeColors::of(const QPalette &palette)
{
    // Whatever is painted asks, and working them out takes longer than painting with them.
    static QHash<qint64, ThemeColors> known;
    const qint64 key = palette.cacheKey();
    if (const auto found = known.constFind(key); found != known.cend())
        return *found;
    if (known.size() == kMostPalettes)
        known.clear();
    return *known.insert(key, colorsOf(palette));
}

namespace Theme {

void apply(Scheme scheme)
{
    // What the desktop gave, before anything was changed.
    static const QPalette desktop = QApplication::palette();
    static const bool isPlain = isPlainDesktop(desktop);
    static const bool isFusion =
        QApplication::style()->name().compare("fusion"_L1, Qt::CaseInsensitive) == 0;
    static bool isStyled = false;

    currentScheme() = scheme;
    if (isFusion && !isStyled) {
        isStyled = true;
        QApplication::setStyle(std::make_unique<TavrinStyle>().release()); // the application's now
    }
    switch (scheme) {
    case Scheme::Desktop:
        QApplication::setPalette(isPlain ? paletteOf(kLight) : legible(desktop));
        break;
    case Scheme::Light:
        QApplication::setPalette(paletteOf(kLight));
        break;
    case Scheme::Dark:
        QApplication::setPalette(paletteOf(kDark));
        break;
    }
}

QPalette legible(QPalette palette)
{
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        const double least = group == QPalette::Disabled ? kLeastDisabled : kLeast;
        const auto isLegible = [&](QPalette::ColorRole ink, QPalette::ColorRole ground) {
            return contrast(palette.color(group, ink), palette.color(group, ground)) >= least;
        };
        // Cards carry the texts of windows and those of lists, so both must suit them.
        if (group != QPalette::Disabled && !isLegible(QPalette::WindowText, QPalette::Base))
            palette.setColor(group, QPalette::Base, palette.color(group, QPalette::Window));
        const QColor stripe = palette.color(group, QPalette::AlternateBase);
        if (contrast(palette.color(group, QPalette::WindowText), stripe) < kReadable)
            palette.setColor(group, QPalette::AlternateBase, palette.color(group, QPalette::Base));
        for (const auto &[ink, ground] : kInks) {
            const QColor behind = palette.color(group, ground);
            const QColor clear = inkOn(behind);
            if (!isLegible(ink, ground))
                palette.setColor(group, ink,
                                 group == QPalette::Disabled ? mixed(behind, clear, 0.5) : clear);
        }
        const QColor field = palette.color(group, QPalette::Base);
        const QColor hint = palette.color(group, QPalette::PlaceholderText);
        if (contrast(mixed(field, hint, hint.alphaF()), field) < least)
            palette.setColor(group, QPalette::PlaceholderText,
                             mixed(field, palette.color(group, QPalette::Text), 0.6));
    }
    return palette;
}

Scheme scheme()
{
    return currentScheme();
}

double contrast(const QColor &first, const QColor &second)
{
    const auto [darker, lighter] = std::minmax({luminance(first), luminance(second)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor inkOn(const QColor &background)
{
    const QColor dark = QColor::fromRgb(kDarkInk);
    const QColor light = QColor::fromRgb(kLightInk);
    const QColor ink = contrast(background, dark) >= contrast(background, light) ? dark : light;
    if (contrast(background, ink) >= kReadable)
        return ink;
    // On a middling colour only the full ones can be read.
    return contrast(background, Qt::black) >= contrast(background, Qt::white) ? Qt::black
                                                                              : Qt::white;
}

QColor color(const TColor &color)
{
    return color.isSet() ? QColor(color.red(), color.green(), color.blue()) : QColor();
}

QColor tileColor(const TColor &tile, const QPalette &palette)
{
    if (tile.isSet())
        return color(tile);
    const ThemeColors colors = ThemeColors::of(palette);
    return mixed(colors.card, colors.ink, 0.18);
}

} // namespace Theme
