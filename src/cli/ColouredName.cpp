// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ColouredName.h"

#include "cli/Console.h"
#include "commonprocs/StringAdditions.h"

namespace {

constexpr char kReset[] = "\x1b[0m";
constexpr char kRed[] = "\x1b[31m";
constexpr int kBrightEnough = 128'000; ///< where black letters read better than white ones

bool hasTrueColour()
{
    static const QByteArray terminal = qgetenv("COLORTERM");
    return terminal == "truecolor" || terminal == "24bit";
}

QByteArray paletteIndex(const TColor &color)
{
    const auto level = [](quint8 channel) { return (channel * 5 + 127) / 255; };
    const int index = 16 + 36 * level(color.red()) + 6 * level(color.green()) + level(color.blue());
    return "5;" + QByteArray::number(index);
}

QByteArray channels(const TColor &color)
{
    return "2;" + QByteArray::number(color.red()) + ';' + QByteArray::number(color.green()) + ';' +
           QByteArray::number(color.blue());
}

QByteArray onBackground(const TColor &color)
{
    const int brightness = 299 * color.red() + 587 * color.green() + 114 * color.blue();
    const QByteArray letters = brightness > kBrightEnough ? "38;5;16" : "38;5;231";
    return "\x1b[" + letters + ";48;" + (hasTrueColour() ? channels(color) : paletteIndex(color)) +
           'm';
}

/// The part of the shown name that lies between two positions, run by run.
QByteArray painted(const TAttributedString &name, qsizetype from, qsizetype to)
{
    QByteArray result;
    qsizetype position = 0;
    for (const TAttributedString::Run &run : name.runs()) {
        const qsizetype start = std::max(position, from);
        const qsizetype end = std::min(position + run.length, to);
        position += run.length;
        if (start >= end)
            continue;
        const QByteArray text = displayed(QStringView(name.string()).sliced(start, end - start));
        result += run.background.isSet() ? onBackground(run.background) + text + kReset : text;
    }
    return result;
}

} // namespace

QByteArray colouredName(const QString &finalName, const TAttributedString &shownName,
                        const QString &shownExtension)
{
    const QString base = stringByTrimmingWhitespace(shownName.string());
    if (base.isEmpty() || shownName.runs().empty() || !finalName.startsWith(base))
        return displayed(finalName);
    const qsizetype start = shownName.string().indexOf(base);
    const QByteArray result = painted(shownName, start, start + base.size());
    const QString rest = finalName.sliced(base.size());
    if (shownExtension.isEmpty() || !rest.endsWith(shownExtension))
        return result + displayed(rest);
    return result + displayed(rest.chopped(shownExtension.size())) + kRed +
           displayed(shownExtension) + kReset;
}
