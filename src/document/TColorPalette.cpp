// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TColorPalette.h"

#include <array>

namespace {

constexpr std::array kColors{
    QLatin1StringView{"9C988A"}, QLatin1StringView{"8DCDC1"}, QLatin1StringView{"D3E397"},
    QLatin1StringView{"FFF5C3"}, QLatin1StringView{"EB6E44"},
};

} // namespace

TColorPalette &TColorPalette::sharedPalette()
{
    static TColorPalette palette;
    return palette;
}

TColor TColorPalette::nextColor()
{
    unsigned index = m_index.load();
    unsigned next = 0;
    do
        next = static_cast<unsigned>((index + 1) % kColors.size());
    while (!m_index.compare_exchange_weak(index, next));
    return TColor::fromHex(QString(kColors[index]));
}

void TColorPalette::reset()
{
    m_index = 0;
}
