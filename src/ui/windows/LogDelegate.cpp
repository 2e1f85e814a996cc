// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/LogDelegate.h"

#include "ui/controls/Icons.h"
#include "ui/controls/Theme.h"

#include <QApplication>
#include <QDateTime>
#include <QLocale>
#include <QPainter>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

constexpr int kMargin = 8;

QString readableDay(QDate day)
{
    const QDate today = QDate::currentDate();
    if (day == today)
        return LogDelegate::tr("Today");
    if (day == today.addDays(-1))
        return LogDelegate::tr("Yesterday");
    return QLocale().toString(day, QLocale::LongFormat);
}

} // namespace

QString LogDelegate::readableDate(const QString &logName)
{
    static const QRegularExpression moment(
        u"(\\d{4,})-(\\d\\d)-(\\d\\d), (\\d\\d)\\.(\\d\\d)\\.(\\d\\d)"_s);
    const QRegularExpressionMatch match = moment.match(logName);
    const auto part = [&match](int group) { return match.captured(group).toInt(); };
    const QDate day(part(1), part(2), part(3));
    const QTime time(part(4), part(5), part(6));
    if (!match.hasMatch() || !day.isValid() || !time.isValid())
        return {};
    return tr("%1, %2", "day, time of day")
        .arg(readableDay(day), QLocale().toString(time, QLocale::ShortFormat));
}

QSize LogDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const
{
    return {0, 2 * option.fontMetrics.height() + 2 * kMargin};
}

void LogDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                        const QModelIndex &index) const
{
    QStyleOptionViewItem item(option);
    initStyleOption(&item, index);
    const QString name = std::exchange(item.text, {});
    const QIcon icon = std::exchange(item.icon, {});
    item.features &= ~QStyleOptionViewItem::HasDecoration;
    item.widget->style()->drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);

    const QRect all = option.rect.adjusted(kMargin, kMargin, -kMargin, -kMargin);
    const auto place = [&](int left, int top, int width, int height) {
        return QStyle::visualRect(option.direction, option.rect,
                                  QRect(all.left() + left, top, width, height));
    };
    const int line = option.fontMetrics.height();
    const ThemeColors colors = ThemeColors::of(option.palette);
    const int side = Icons::extent(option.fontMetrics);
    const int left = side + kMargin;
    const QString date = readableDate(name);
    const QString summary = index.data(kSummaryRole).toString();
    const auto draw = [&](const QString &text, int top, const QColor &ink) {
        painter->setPen(ink);
        const QRect rect = place(left, top, all.width() - left, line);
        const QString shown = option.fontMetrics.elidedText(text, Qt::ElideMiddle, rect.width());
        painter->drawText(rect, QStyle::visualAlignment(option.direction, Qt::AlignLeft), shown);
    };
    const int top = date.isEmpty() ? all.center().y() - line / 2 : all.top();
    icon.paint(painter, place(0, top + (line - side) / 2, side, side));
    const QString title = date.isEmpty() ? name : date;
    draw(summary.isEmpty() ? title
                           : tr("%1 \u2013 %2", "time, what was renamed").arg(title, summary),
         top, colors.ink);
    if (!date.isEmpty())
        draw(name, all.top() + line, colors.muted);
}
