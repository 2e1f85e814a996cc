// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/controls/Icons.h"

#include "document/TErrorTypes.h"
#include "document/TRuleKinds.h"
#include "ui/controls/Theme.h"

#include <QApplication>
#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr int kUsualExtent = 16;

struct Kind
{
    QLatin1StringView identifier;
    QLatin1StringView icon;
    const char *name;
};
constexpr std::array kKinds{
    Kind{"Text"_L1, "text"_L1, QT_TRANSLATE_NOOP("Icons", "Text")},
    Kind{"Separator"_L1, "separator"_L1, QT_TRANSLATE_NOOP("Icons", "Separator")},
    Kind{"Counter"_L1, "counter"_L1, QT_TRANSLATE_NOOP("Icons", "Counter")},
    Kind{"Original"_L1, "original"_L1, QT_TRANSLATE_NOOP("Icons", "Original")},
    Kind{"Date"_L1, "date"_L1, QT_TRANSLATE_NOOP("Icons", "Date")},
    Kind{"ImageTag"_L1, "image"_L1, QT_TRANSLATE_NOOP("Icons", "Image")},
    Kind{"AudioTag"_L1, "audio"_L1, QT_TRANSLATE_NOOP("Icons", "Audio")},
    Kind{"VideoTag"_L1, "video"_L1, QT_TRANSLATE_NOOP("Icons", "Video")},
    Kind{"CSVTag"_L1, "csv"_L1, QT_TRANSLATE_NOOP("Icons", "CSV")},
    Kind{"RegExTag"_L1, "regex"_L1, QT_TRANSLATE_NOOP("Icons", "RegEx")},
};

const Kind &kindOf(const QString &identifier)
{
    for (const Kind &kind : kKinds) {
        if (kind.identifier == identifier)
            return kind;
    }
    return kKinds[0];
}

QPixmap drawn(QLatin1StringView name, QSize pixels, const QColor &ink)
{
    const QString key = u"tavrin-icon:%1:%2x%3:%4"_s.arg(name)
                            .arg(pixels.width())
                            .arg(pixels.height())
                            .arg(ink.name(QColor::HexArgb));
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap))
        return pixmap;
    QFile file(u":/icons/%1.svg"_s.arg(name));
    QByteArray drawing = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    drawing.replace("currentColor", ink.name().toLatin1());
    pixmap = QPixmap(pixels);
    pixmap.fill(Qt::transparent);
    QSvgRenderer renderer(drawing);
    if (renderer.isValid()) {
        const QSizeF size =
            QSizeF(renderer.defaultSize()).scaled(QSizeF(pixels), Qt::KeepAspectRatio);
        const QRectF place(
            QPointF((pixels.width() - size.width()) / 2, (pixels.height() - size.height()) / 2),
            size);
        QPainter painter(&pixmap);
        painter.setOpacity(ink.alphaF());
        renderer.render(&painter, place);
    }
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

/// Draws in the colour that the palette has for text at the moment, or always in one.
class DrawingEngine : public QIconEngine
{
public:
    explicit DrawingEngine(QLatin1StringView name, QColor ink = {})
        : m_name(name)
        , m_ink(std::move(ink))
    {
    }
    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        const qreal ratio = painter->device()->devicePixelRatioF();
        QPixmap pixmap = drawn(m_name, rect.size() * ratio, ink(mode));
        pixmap.setDevicePixelRatio(ratio);
        painter->drawPixmap(rect, pixmap);
    }
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State) override
    {
        return drawn(m_name, size, ink(mode));
    }
    QIconEngine *clone() const override
    {
        return std::make_unique<DrawingEngine>(m_name, m_ink).release(); // the icon's now
    }

private:
    QColor ink(QIcon::Mode mode) const
    {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        if (m_ink.isValid() && group != QPalette::Disabled)
            return m_ink;
        return QApplication::palette().color(group, QPalette::WindowText);
    }

    QLatin1StringView m_name;
    QColor m_ink;
};

QIcon iconOf(QLatin1StringView name, const QColor &ink = {})
{
    return QIcon(std::make_unique<DrawingEngine>(name, ink).release()); // the icon's now
}

} // namespace

namespace Icons {

QIcon icon(QLatin1StringView name)
{
    return iconOf(name);
}

QPixmap pixmap(QLatin1StringView name, int size, const QColor &ink, qreal devicePixelRatio)
{
    QPixmap pixmap = drawn(name, (QSizeF(size, size) * devicePixelRatio).toSize(), ink);
    pixmap.setDevicePixelRatio(devicePixelRatio);
    return pixmap;
}

int extent(const QFontMetrics &metrics)
{
    const int fitting = metrics.height() * 7 / 8;
    return std::max(kUsualExtent, fitting + fitting % 2); // even, so that it has a middle
}

QLatin1StringView forIdentifier(const QString &identifier)
{
    return kindOf(identifier).icon;
}

QLatin1StringView forRule(const TRuleModel &rule)
{
    return forIdentifier(TRuleKinds::identifierForRule(rule));
}

QString kindName(const QString &identifier)
{
    return QApplication::translate("Icons", kindOf(identifier).name);
}

QIcon forLevel(int errLevel)
{
    const ThemeColors colors = ThemeColors::of(QApplication::palette());
    switch (errLevel) {
    case TErrorTypes::kWarning:
        return iconOf("warning"_L1, colors.warning);
    case TErrorTypes::kCritical:
        return iconOf("stop"_L1, colors.critical);
    default:
        return iconOf("tick"_L1, colors.good);
    }
}

} // namespace Icons
