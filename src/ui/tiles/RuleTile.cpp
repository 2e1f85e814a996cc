// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tiles/RuleTile.h"

#include "commonprocs/ByteNames.h"
#include "document/TRuleKinds.h"
#include "ui/controls/Icons.h"
#include "ui/controls/Theme.h"
#include "ui/tiles/ShownText.h"

#include <QKeyEvent>
#include <QMouseEvent>

using namespace Qt::StringLiterals;

namespace {

/// A tool tip is no book.
constexpr qsizetype kLongestToolTip = 1000;

QString toolTipOf(const QString &kind, const QString &name)
{
    QString text = ByteNames::forDisplay(name.left(kLongestToolTip));
    if (name.size() > kLongestToolTip)
        text += u'\u2026';
    // Rich, since only rich tool tips wrap; the direction of the name is its own affair.
    return u"<b>%1</b><br><span style=\"white-space:pre-wrap\">&#x2068;%2&#x2069;</span>"_s.arg(
        kind.toHtmlEscaped(), text.toHtmlEscaped());
}

} // namespace

RuleTile::RuleTile(TRulePtr rule, QWidget *parent)
    : TileButton(parent)
    , m_rule(std::move(rule))
{
    setFocusPolicy(Qt::ClickFocus);
    ruleChanged();
}

void RuleTile::ruleChanged()
{
    const QString kind = Icons::kindName(TRuleKinds::identifierForRule(*m_rule));
    const QString name = m_rule->name();
    setText(ShownText::tileName(name));
    setAccessibleName(tr("%1: %2").arg(kind, text()));
    setToolTip(toolTipOf(kind, name));
    updateGeometry();
    update();
}

void RuleTile::setMark(Mark mark)
{
    if (m_mark == mark)
        return;
    m_mark = mark;
    setAccessibleDescription(mark == Mark::None ? QString() : tr("selected"));
    update();
}

void RuleTile::setFaded(bool isFaded)
{
    m_isFaded = isFaded;
    update();
}

void RuleTile::setActive(bool isActive)
{
    if (std::exchange(m_isActive, isActive) != isActive)
        update();
}

TileDrawing RuleTile::drawing() const
{
    const ThemeColors colors = ThemeColors::of(palette());
    TileDrawing drawing = TileDrawing::of(*m_rule, palette());
    drawing.isFaded = m_isFaded;
    if (m_mark == Mark::Edited || (m_mark == Mark::Selected && m_isActive)) {
        drawing.outline = colors.accent;
    } else if (m_mark == Mark::Selected) {
        drawing.outline = colors.muted;
    } else if (hasFocus()) {
        drawing.outline = colors.accent;
        drawing.isOutlineDashed = true;
    }
    return drawing;
}

void RuleTile::mousePressEvent(QMouseEvent *event)
{
    event->ignore();
}

void RuleTile::mouseMoveEvent(QMouseEvent *event)
{
    event->ignore();
}

void RuleTile::mouseReleaseEvent(QMouseEvent *event)
{
    event->ignore();
}

void RuleTile::keyPressEvent(QKeyEvent *event)
{
    event->ignore();
}

void RuleTile::keyReleaseEvent(QKeyEvent *event)
{
    event->ignore();
}
