// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/controls/TavrinStyle.h"

#include "ui/controls/Icons.h"
#include "ui/controls/Theme.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QBitmap>
#include <QPainter>
#include <QStyleOption>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr int kFieldHeight = 28;
constexpr int kButtonHeight = 32;
constexpr qreal kTickUnits = 15; ///< of a check box whose tick has whole measures
constexpr int kStepperWidth = 20;
constexpr int kChevron = 4; ///< half of its width
constexpr int kBarHeight = 8;
constexpr int kScrollBarWidth = 12;
constexpr int kLeastSlider = 32;
constexpr int kMenuMargin = 4;
constexpr int kMenuItemRoom = 4;      ///< above and below an item's text, more than usual
constexpr float kFloatingEdge = 0.5F; ///< how strong the border of menus and tool tips is
constexpr int kToolTipMargin = 5;
constexpr int kHeaderMargin = 8;

constexpr QLatin1StringView kX11{"xcb"};

/// Its items begin where the box has its text.
constexpr int kListMargin = 8;

bool isListOfComboBox(const QWidget *widget)
{
    return widget != nullptr && widget->inherits("QComboBoxListView");
}

/// Of the small icons of a control.
int extentOf(const QStyleOption *option, const QWidget *widget)
{
    const QFontMetrics metrics(widget != nullptr ? widget->font() : QApplication::font());
    return Icons::extent(option != nullptr ? option->fontMetrics : metrics);
}

/// The form of an icon of one colour, in another one.
QIcon inColor(const QIcon &icon, const QColor &ink, int extent, const QPainter &target)
{
    QPixmap pixmap = icon.pixmap(QSize(extent, extent), target.device()->devicePixelRatioF());
    QPainter painter(&pixmap);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(QRect(QPoint(), pixmap.deviceIndependentSize().toSize()), ink);
    return {pixmap};
}

bool has(const QStyleOption &option, QStyle::StateFlag flag)
{
    return option.state.testFlag(flag);
}

void drawFace(QPainter &painter, const QRect &rect, const QColor &fill, const QPen &pen)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(pen);
    painter.setBrush(fill);
    painter.drawRoundedRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), Theme::kFieldRadius,
                            Theme::kFieldRadius);
    painter.restore();
}

/// Of what has no shadow but lies over everything.
QColor floatingEdge(const ThemeColors &colors)
{
    QColor edge = colors.muted;
    edge.setAlphaF(kFloatingEdge);
    return edge;
}

/// Cuts off the corners outside of the border.
bool roundMask(const QRect &rect, QStyleHintReturn *answer)
{
    auto *mask = qstyleoption_cast<QStyleHintReturnMask *>(answer);
    // Elsewhere than on X11 a window's shape is the affair of its system.
    if (mask == nullptr || QGuiApplication::platformName() != kX11)
        return false;
    QBitmap shape(rect.size());
    shape.clear();
    QPainter painter(&shape);
    painter.setPen(Qt::color1);
    painter.setBrush(Qt::color1);
    painter.drawRoundedRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), Theme::kFieldRadius,
                            Theme::kFieldRadius);
    painter.end();
    mask->region = QRegion(shape);
    return true;
}

void drawFrame(QPainter &painter, const QRect &rect, const QColor &edge)
{
    painter.save();
    painter.setPen(edge);
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(rect.adjusted(0, 0, -1, -1));
    painter.restore();
}

void drawField(QPainter &painter, const QStyleOption &option, const QRect &rect, bool isFocused)
{
    const ThemeColors colors = ThemeColors::of(option.palette);
    drawFace(painter, rect, has(option, QStyle::State_Enabled) ? colors.field : colors.window,
             isFocused ? QPen(colors.accent, 1.5) : QPen(colors.border));
}

void drawChevron(QPainter &painter, QPointF centre, bool isUp, const QColor &ink)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(ink, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const qreal dip = isUp ? -kChevron / 2.0 : kChevron / 2.0;
    const std::array points{centre + QPointF(-kChevron, -dip), centre + QPointF(0, dip),
                            centre + QPointF(kChevron, -dip)};
    painter.drawPolyline(points.data(), static_cast<int>(points.size()));
    painter.restore();
}

void drawButton(QPainter &painter, const QStyleOption &option)
{
    const ThemeColors colors = ThemeColors::of(option.palette);
    const auto *button = qstyleoption_cast<const QStyleOptionButton *>(&option);
    const bool isDefault =
        button != nullptr && button->features.testFlag(QStyleOptionButton::DefaultButton);
    const bool isFlat = button != nullptr && button->features.testFlag(QStyleOptionButton::Flat);
    const bool isEnabled = has(option, QStyle::State_Enabled);
    QColor fill = isDefault && isEnabled ? colors.accent : option.palette.color(QPalette::Button);
    const bool isOn = has(option, QStyle::State_On);
    if (isOn)
        fill = colors.selection;
    else if (has(option, QStyle::State_Sunken))
        fill = colors.isDark ? fill.lighter(125) : fill.darker(109);
    else if (has(option, QStyle::State_MouseOver) && isEnabled)
        fill = colors.isDark ? fill.lighter(112) : fill.darker(103);
    else if (isFlat)
        fill = Qt::transparent;
    const bool isFocused =
        has(option, QStyle::State_HasFocus) && has(option, QStyle::State_KeyboardFocusChange);
    const QColor edge = (isDefault || isOn) && isEnabled ? colors.accent : colors.border;
    const QPen pen(isFlat ? QColor(Qt::transparent) : edge);
    drawFace(painter, option.rect, fill, isFocused ? QPen(colors.accent, 1.5) : pen);
    if (isFocused && isDefault) // within, since the edge has the accent already
        drawFace(painter, option.rect.adjusted(2, 2, -2, -2), fill, QPen(colors.accentInk, 1.5));
}

void drawIndicator(QPainter &painter, const QStyleOption &option, bool isRadio)
{
    const ThemeColors colors = ThemeColors::of(option.palette);
    const bool isEnabled = has(option, QStyle::State_Enabled);
    const bool isOn = has(option, QStyle::State_On);
    const bool isMarked = isOn || has(option, QStyle::State_NoChange);
    QRectF box(QPointF(), QSizeF(1, 1) * (Icons::extent(option.fontMetrics) - 1));
    box.moveCenter(QRectF(option.rect).center());
    const qreal radius = isRadio ? box.height() / 2 : 4;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor fill = !isMarked ? colors.field : isEnabled ? colors.accent : colors.border;
    painter.setPen(QPen(isMarked ? fill : colors.muted, 1));
    painter.setBrush(fill);
    painter.drawRoundedRect(box, radius, radius);
    if (has(option, QStyle::State_HasFocus)) {
        painter.setPen(QPen(isMarked ? colors.ink : colors.accent, 1));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(box.adjusted(-1.5, -1.5, 1.5, 1.5), radius + 1.5, radius + 1.5);
    }
    painter.translate(box.center());
    painter.scale(box.width() / kTickUnits, box.width() / kTickUnits);
    const QColor faint = Theme::contrast(colors.muted, fill) < 2 ? colors.card : colors.muted;
    painter.setPen(
        QPen(isEnabled ? colors.accentInk : faint, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    if (isOn && isRadio) {
        painter.setBrush(painter.pen().color());
        painter.setPen(Qt::NoPen);
        painter.drawEllipse(QPointF(), 3, 3);
    } else if (isOn) {
        const std::array tick{QPointF(-3.5, 0.2), QPointF(-1, 2.8), QPointF(3.6, -2.6)};
        painter.drawPolyline(tick.data(), static_cast<int>(tick.size()));
    } else if (isMarked) {
        painter.drawLine(QPointF(-3, 0), QPointF(3, 0));
    }
    painter.restore();
}

void drawBar(QPainter &painter, const QStyleOptionProgressBar &option)
{
    const ThemeColors colors = ThemeColors::of(option.palette);
    QRectF groove(option.rect);
    groove.setHeight(std::min<qreal>(kBarHeight, groove.height()));
    groove.moveCenter(QRectF(option.rect).center());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.border);
    const qreal radius = groove.height() / 2;
    painter.drawRoundedRect(groove, radius, radius);
    const double range = static_cast<double>(option.maximum) - option.minimum;
    double part = range > 0 ? (static_cast<double>(option.progress) - option.minimum) / range : 0;
    part = std::clamp(part, 0.0, 1.0);
    QRectF done = groove;
    done.setWidth(groove.width() * part);
    if (option.direction == Qt::RightToLeft)
        done.moveRight(groove.right());
    painter.setBrush(colors.accent);
    if (done.width() >= 1)
        painter.drawRoundedRect(done, std::min(radius, done.width() / 2), radius);
    painter.restore();
}

void drawScrollBar(QPainter &painter, const QStyleOptionSlider &option, const QRect &slider)
{
    const ThemeColors colors = ThemeColors::of(option.palette);
    painter.fillRect(option.rect, colors.card);
    if (option.maximum <= option.minimum)
        return;
    const bool isActive = has(option, QStyle::State_MouseOver) || has(option, QStyle::State_Sunken);
    QColor ink = colors.muted;
    ink.setAlphaF(isActive ? 0.8F : 0.45F);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink);
    const QRectF thumb = QRectF(slider).adjusted(3, 3, -3, -3);
    const qreal radius = std::min(thumb.width(), thumb.height()) / 2;
    painter.drawRoundedRect(thumb, radius, radius);
    painter.restore();
}

/// Where a scroll bar without steppers has its parts.
QRect scrollBarPart(const QStyleOptionSlider &bar, QStyle::SubControl part, int leastSlider)
{
    const bool isHorizontal = bar.orientation == Qt::Horizontal;
    const int length = isHorizontal ? bar.rect.width() : bar.rect.height();
    const qint64 range = qint64{bar.maximum} - bar.minimum;
    int slider = length;
    if (range > 0) {
        slider = static_cast<int>(qint64{bar.pageStep} * length / (range + bar.pageStep));
        slider = std::clamp(slider, std::min(leastSlider, length), length);
    }
    const int start = QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition,
                                                      length - slider, bar.upsideDown);
    const auto piece = [&](int from, int to) {
        return isHorizontal
                   ? QRect(bar.rect.left() + from, bar.rect.top(), to - from, bar.rect.height())
                   : QRect(bar.rect.left(), bar.rect.top() + from, bar.rect.width(), to - from);
    };
    switch (part) {
    case QStyle::SC_ScrollBarSlider:
        return piece(start, start + slider);
    case QStyle::SC_ScrollBarSubPage:
        return piece(0, start);
    case QStyle::SC_ScrollBarAddPage:
        return piece(start + slider, length);
    case QStyle::SC_ScrollBarGroove:
        return bar.rect;
    default:
        return {};
    }
}

} // namespace

TavrinStyle::TavrinStyle()
    : QProxyStyle(u"fusion"_s)
{
}

void TavrinStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option,
                                QPainter *painter, const QWidget *widget) const
{
    switch (element) {
    case PE_PanelLineEdit: {
        const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option);
        // Without a frame it is the inside of a spin box or pop-up, which has drawn the field.
        if (frame == nullptr || frame->lineWidth > 0)
            drawField(*painter, *option, option->rect, has(*option, State_HasFocus));
        return;
    }
    case PE_FrameLineEdit:
    case PE_PanelScrollAreaCorner:
        return;
    case PE_Frame:
        drawFrame(*painter, option->rect, ThemeColors::of(option->palette).border);
        return;
    case PE_PanelMenu:
        painter->fillRect(option->rect, ThemeColors::of(option->palette).card);
        return;
    case PE_FrameMenu:
        drawFace(*painter, option->rect, Qt::transparent,
                 QPen(floatingEdge(ThemeColors::of(option->palette))));
        return;
    case PE_PanelTipLabel: {
        painter->fillRect(option->rect, option->palette.color(QPalette::ToolTipBase));
        drawFace(*painter, option->rect, Qt::transparent,
                 QPen(floatingEdge(ThemeColors::of(option->palette))));
        return;
    }
    case PE_PanelItemViewRow: // beside an item of a tree, which its delegate paints
        if (!has(*option, State_Selected))
            break;
        painter->fillRect(option->rect, ThemeColors::of(option->palette).selection);
        return;
    case PE_PanelButtonCommand:
        drawButton(*painter, *option);
        return;
    case PE_IndicatorCheckBox:
    case PE_IndicatorRadioButton:
        drawIndicator(*painter, *option, element == PE_IndicatorRadioButton);
        return;
    default:
        break;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void TavrinStyle::drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                              const QWidget *widget) const
{
    const auto *bar = qstyleoption_cast<const QStyleOptionProgressBar *>(option);
    switch (element) {
    case CE_ProgressBarGroove:
        return;
    case CE_ProgressBarContents:
        if (bar != nullptr && (bar->minimum != 0 || bar->maximum != 0)) {
            drawBar(*painter, *bar);
            return;
        }
        break;
    case CE_PushButtonLabel: {
        const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option);
        if (button != nullptr && button->features.testFlag(QStyleOptionButton::DefaultButton) &&
            has(*option, State_Enabled)) {
            QStyleOptionButton inverse(*button);
            inverse.palette.setColor(QPalette::ButtonText,
                                     ThemeColors::of(option->palette).accentInk);
            QProxyStyle::drawControl(element, &inverse, painter, widget);
            return;
        }
        break;
    }
    case CE_MenuItem: {
        const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
        if (item != nullptr && !item->icon.isNull() && has(*option, State_Selected) &&
            has(*option, State_Enabled)) {
            QStyleOptionMenuItem lit(*item);
            lit.icon = inColor(item->icon, option->palette.color(QPalette::HighlightedText),
                               extentOf(option, widget), *painter);
            QProxyStyle::drawControl(element, &lit, painter, widget);
            return;
        }
        break;
    }
    case CE_HeaderSection: {
        const ThemeColors colors = ThemeColors::of(option->palette);
        painter->fillRect(option->rect, colors.card);
        const auto *header = qstyleoption_cast<const QStyleOptionHeader *>(option);
        if (header == nullptr || header->orientation == Qt::Horizontal)
            painter->fillRect(QRect(option->rect.bottomLeft(), QSize(option->rect.width(), 1)),
                              colors.border);
        return;
    }
    default:
        break;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void TavrinStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                                     QPainter *painter, const QWidget *widget) const
{
    const ThemeColors colors = ThemeColors::of(option->palette);
    const QColor ink = has(*option, State_Enabled) ? colors.muted : colors.border;
    if (control == CC_ComboBox) {
        const auto *combo = qstyleoption_cast<const QStyleOptionComboBox *>(option);
        if (combo != nullptr && combo->frame) {
            drawField(*painter, *option, option->rect, has(*option, State_HasFocus));
            const QRect arrow = subControlRect(control, option, SC_ComboBoxArrow, widget);
            drawChevron(*painter, QRectF(arrow).center(), false, ink);
            return;
        }
    } else if (control == CC_ScrollBar) {
        if (const auto *bar = qstyleoption_cast<const QStyleOptionSlider *>(option)) {
            drawScrollBar(*painter, *bar,
                          subControlRect(control, option, SC_ScrollBarSlider, widget));
            return;
        }
    } else if (control == CC_SpinBox) {
        const auto *spin = qstyleoption_cast<const QStyleOptionSpinBox *>(option);
        if (spin != nullptr && spin->frame) {
            drawField(*painter, *option, option->rect, has(*option, State_HasFocus));
            if (spin->buttonSymbols != QAbstractSpinBox::NoButtons) {
                for (const SubControl part : {SC_SpinBoxUp, SC_SpinBoxDown}) {
                    const QRect arrow = subControlRect(control, option, part, widget);
                    const bool isDown =
                        option->activeSubControls == part && has(*option, State_Sunken);
                    drawChevron(*painter, QRectF(arrow).center(), part == SC_SpinBoxUp,
                                isDown ? colors.accent : ink);
                }
            }
            return;
        }
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

QRect TavrinStyle::subControlRect(ComplexControl control, const QStyleOptionComplex *option,
                                  SubControl subControl, const QWidget *widget) const
{
    const QRect all = option->rect;
    QRect part;
    if (control == CC_SpinBox) {
        const auto *spin = qstyleoption_cast<const QStyleOptionSpinBox *>(option);
        const bool isBare = spin == nullptr || spin->buttonSymbols == QAbstractSpinBox::NoButtons;
        const int stepper = isBare ? 0 : kStepperWidth;
        const int middle = all.top() + all.height() / 2;
        switch (subControl) {
        case SC_SpinBoxUp:
            part = QRect(all.right() - stepper, all.top() + 3, stepper, middle - all.top() - 3);
            break;
        case SC_SpinBoxDown:
            part = QRect(all.right() - stepper, middle, stepper, all.bottom() - middle - 2);
            break;
        case SC_SpinBoxEditField:
            part = all.adjusted(6, 2, -stepper - 2, -2);
            break;
        default:
            return QProxyStyle::subControlRect(control, option, subControl, widget);
        }
        return visualRect(option->direction, all, part);
    }
    if (control == CC_ScrollBar) {
        if (const auto *bar = qstyleoption_cast<const QStyleOptionSlider *>(option))
            return visualRect(option->direction, all,
                              scrollBarPart(*bar, subControl, kLeastSlider));
    }
    if (control == CC_ComboBox && subControl == SC_ComboBoxEditField)
        return visualRect(option->direction, all, all.adjusted(8, 2, -kStepperWidth - 4, -2));
    if (control == CC_ComboBox && subControl == SC_ComboBoxArrow)
        return visualRect(
            option->direction, all,
            QRect(all.right() - kStepperWidth - 3, all.top(), kStepperWidth, all.height()));
    return QProxyStyle::subControlRect(control, option, subControl, widget);
}

QSize TavrinStyle::sizeFromContents(ContentsType type, const QStyleOption *option,
                                    const QSize &size, const QWidget *widget) const
{
    QSize result = QProxyStyle::sizeFromContents(type, option, size, widget);
    switch (type) {
    case CT_LineEdit:
    case CT_SpinBox:
    case CT_ComboBox:
        result.setHeight(std::max(kFieldHeight, option->fontMetrics.height() + 11));
        break;
    case CT_ItemViewItem:
        if (isListOfComboBox(widget))
            result.setHeight(std::max(result.height(), option->fontMetrics.height() + 10));
        break;
    case CT_MenuItem: {
        const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
        if (item != nullptr && item->menuItemType != QStyleOptionMenuItem::Separator)
            result.rheight() += kMenuItemRoom;
        break;
    }
    case CT_PushButton: {
        const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option);
        result.setHeight(std::max(kButtonHeight, size.height() + 12));
        const bool hasText = button != nullptr && !button->text.isEmpty();
        if (hasText)
            result.setWidth(std::max(result.width() + 16, 80));
        break;
    }
    default:
        break;
    }
    return result;
}

QRect TavrinStyle::subElementRect(SubElement element, const QStyleOption *option,
                                  const QWidget *widget) const
{
    const QRect inside = QProxyStyle::subElementRect(element, option, widget);
    const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option);
    if (element == SE_LineEditContents && frame != nullptr && frame->lineWidth > 0)
        return inside.adjusted(5, 0, -5, 0);
    return inside;
}

int TavrinStyle::pixelMetric(PixelMetric metric, const QStyleOption *option,
                             const QWidget *widget) const
{
    switch (metric) {
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
        return extentOf(option, widget) + 2;
    case PM_SmallIconSize:
    case PM_ButtonIconSize:
    case PM_ListViewIconSize:
    case PM_LineEditIconSize:
        return extentOf(option, widget);
    case PM_CheckBoxLabelSpacing:
    case PM_RadioButtonLabelSpacing:
        return 8;
    case PM_MenuVMargin:
        return kMenuMargin;
    case PM_ToolTipLabelFrameWidth:
        return kToolTipMargin;
    case PM_MenuPanelWidth:
        return 1;
    case PM_HeaderMargin:
        return kHeaderMargin;
    case PM_ScrollBarExtent:
        return kScrollBarWidth;
    case PM_ScrollView_ScrollBarSpacing:
        return 0;
    case PM_FocusFrameHMargin:
        return isListOfComboBox(widget) ? kListMargin
                                        : QProxyStyle::pixelMetric(metric, option, widget);
    case PM_LayoutHorizontalSpacing:
    case PM_LayoutVerticalSpacing:
        return 8;
    case PM_LayoutLeftMargin:
    case PM_LayoutTopMargin:
    case PM_LayoutRightMargin:
    case PM_LayoutBottomMargin:
        return 12;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int TavrinStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                           QStyleHintReturn *returnData) const
{
    switch (hint) {
    case SH_Menu_Mask:
    case SH_ToolTip_Mask:
        return roundMask(option->rect, returnData) ? 1 : 0;
    case SH_ItemView_ShowDecorationSelected:
        return 1;
    case SH_DialogButtonBox_ButtonsHaveIcons:
    case SH_ComboBox_Popup:
        return 0;
    default:
        return QProxyStyle::styleHint(hint, option, widget, returnData);
    }
}
