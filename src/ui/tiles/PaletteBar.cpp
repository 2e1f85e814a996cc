// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tiles/PaletteBar.h"

#include "ui/controls/Theme.h"
#include "ui/tiles/PaletteTile.h"

#include <QEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QStyle>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

struct Element
{
    QLatin1StringView identifier;
    const char *toolTip;
};
constexpr std::array kElements{
    Element{"Text"_L1, QT_TRANSLATE_NOOP("PaletteBar", "The same text in every name")},
    Element{"Separator"_L1,
            QT_TRANSLATE_NOOP("PaletteBar", "A blank, a dash or another character between parts")},
    Element{"Counter"_L1, QT_TRANSLATE_NOOP("PaletteBar", "A number that counts the files")},
    Element{
        "Original"_L1,
        QT_TRANSLATE_NOOP("PaletteBar", "The old name, or the folder, size or dates of the file")},
    Element{"Date"_L1, QT_TRANSLATE_NOOP("PaletteBar", "Today's date, or the time of day")},
    Element{"ImageTag"_L1,
            QT_TRANSLATE_NOOP("PaletteBar", "What a picture tells of itself: date, camera, place")},
    Element{"AudioTag"_L1,
            QT_TRANSLATE_NOOP("PaletteBar", "What a song tells of itself: title, artist, album")},
    Element{"VideoTag"_L1,
            QT_TRANSLATE_NOOP("PaletteBar", "What a film tells of itself: title, date, duration")},
    Element{"CSVTag"_L1, QT_TRANSLATE_NOOP("PaletteBar", "A column of a table, one row a file")},
    Element{"RegExTag"_L1,
            QT_TRANSLATE_NOOP("PaletteBar", "Searches and replaces by regular expressions")},
};
constexpr int kSpacing = 4; ///< beside the room that tiles keep around themselves
constexpr int kLabelGap = 10;

} // namespace

PaletteBar::PaletteBar(QWidget *parent)
    : QWidget(parent)
    , m_label(new QLabel(tr("Name elements"), this))
{
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setAccessibleName(m_label->text());
    m_tiles.reserve(kElements.size());
    for (const Element &element : kElements)
        addTile(element.identifier, tr(element.toolTip));
    setTabStop(m_tiles.front());
    colorLabel();
}

void PaletteBar::addTile(const QString &identifier, const QString &toolTip)
{
    auto *tile = new PaletteTile(identifier, this);
    tile->setToolTip(toolTip + u'\n' + tr("Drag it into the recipe, or press Enter to add it."));
    tile->setAccessibleDescription(toolTip);
    connect(tile, &PaletteTile::plainlyClicked, this, &PaletteBar::tileClicked);
    connect(tile, &PaletteTile::clicked, this,
            [this, identifier] { Q_EMIT addRequested(identifier); });
    connect(tile, &PaletteTile::focused, this, [this, tile] { setTabStop(tile); });
    m_tiles.push_back(tile);
}

void PaletteBar::setTabStop(PaletteTile *tile)
{
    for (PaletteTile *each : m_tiles)
        each->setFocusPolicy(each == tile ? Qt::StrongFocus : Qt::ClickFocus);
}

void PaletteBar::takeFocus()
{
    for (PaletteTile *tile : m_tiles) {
        if (tile->focusPolicy() == Qt::StrongFocus)
            tile->setFocus(Qt::ShortcutFocusReason);
    }
}

int PaletteBar::labelWidth() const
{
    return m_label->sizeHint().width() + kLabelGap;
}

FlowPlan PaletteBar::planBeside(int indent, int width) const
{
    std::vector<FlowPlan::Item> items;
    items.reserve(m_tiles.size());
    int height = 0;
    for (const PaletteTile *tile : m_tiles) {
        const QSize size = tile->sizeHint();
        items.push_back({size.width(), size.width()});
        height = std::max(height, size.height());
    }
    return FlowPlan::of(
        items, {std::max(width - indent, 1), height, kSpacing, kSpacing, layoutDirection()});
}

/// The label gives way where it would cost a line.
PaletteBar::Plan PaletteBar::plan(int width) const
{
    FlowPlan beside = planBeside(labelWidth(), width);
    FlowPlan alone = planBeside(0, width);
    if (alone.height < beside.height)
        return {std::move(alone), false};
    return {std::move(beside), true};
}

int PaletteBar::heightForWidth(int width) const
{
    return plan(width).tiles.height;
}

QSize PaletteBar::sizeHint() const
{
    int width = labelWidth();
    for (const PaletteTile *tile : m_tiles)
        width += tile->sizeHint().width() + kSpacing;
    return {width, heightForWidth(width)};
}

QSize PaletteBar::minimumSizeHint() const
{
    int widest = 0;
    for (const PaletteTile *tile : m_tiles)
        widest = std::max(widest, tile->sizeHint().width());
    return {labelWidth() + widest, m_tiles.front()->sizeHint().height()};
}

void PaletteBar::place()
{
    const Plan flow = plan(width());
    const bool isIndented = flow.hasLabel && layoutDirection() == Qt::LeftToRight;
    const int indent = isIndented ? labelWidth() : 0;
    for (std::size_t i = 0; i < m_tiles.size(); ++i)
        m_tiles[i]->setGeometry(flow.tiles.places[i].translated(indent, 0));
    const QRect label(0, 0, m_label->sizeHint().width(), flow.tiles.places.front().height());
    m_label->setGeometry(QStyle::visualRect(layoutDirection(), rect(), label));
    m_label->setVisible(flow.hasLabel);
}

void PaletteBar::resizeEvent(QResizeEvent *)
{
    place();
}

void PaletteBar::keyPressEvent(QKeyEvent *event)
{
    const auto at = std::find(m_tiles.begin(), m_tiles.end(), focusWidget());
    const bool isMirrored = layoutDirection() == Qt::RightToLeft;
    const int forward = isMirrored ? Qt::Key_Left : Qt::Key_Right;
    const int back = isMirrored ? Qt::Key_Right : Qt::Key_Left;
    if (at == m_tiles.end())
        return event->ignore();
    if ((event->key() == forward || event->key() == Qt::Key_Down) && at + 1 != m_tiles.end())
        (*(at + 1))->setFocus(Qt::OtherFocusReason);
    else if ((event->key() == back || event->key() == Qt::Key_Up) && at != m_tiles.begin())
        (*(at - 1))->setFocus(Qt::OtherFocusReason);
    else if (event->key() == Qt::Key_Home)
        m_tiles.front()->setFocus(Qt::OtherFocusReason);
    else if (event->key() == Qt::Key_End)
        m_tiles.back()->setFocus(Qt::OtherFocusReason);
    else
        event->ignore();
}

void PaletteBar::colorLabel()
{
    QPalette muted = m_label->palette();
    muted.setColor(QPalette::WindowText, ThemeColors::of(palette()).muted);
    if (muted != m_label->palette())
        m_label->setPalette(muted);
}

void PaletteBar::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    switch (event->type()) {
    case QEvent::PaletteChange:
        colorLabel();
        break;
    case QEvent::FontChange:
    case QEvent::StyleChange:
    case QEvent::LayoutDirectionChange:
        updateGeometry();
        place();
        break;
    default:
        break;
    }
}
