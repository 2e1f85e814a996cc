// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tiles/TileStrip.h"

#include "ui/tiles/DropPlace.h"
#include "ui/tiles/InsertionMark.h"
#include "ui/tiles/RuleTile.h"
#include "ui/tiles/TileDrawing.h"

#include <QApplication>
#include <QEvent>

#include <algorithm>
#include <unordered_map>

namespace {

constexpr int kLineSpacing = 4;
constexpr int kMarkWidth = 11;

} // namespace

TileStrip::TileStrip(TDocument &document, QWidget *parent)
    : QWidget(parent)
    , m_document(document)
    , m_dropPlace(new DropPlace(this))
    , m_insertionMark(new InsertionMark(this))
{
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setAccessibleName(tr("Recipe"));
    connect(&document, &TDocument::rulesChanged, this, &TileStrip::followRules);
    connect(&document, &TDocument::ruleChanged, this, &TileStrip::ruleChanged);
    connect(qApp, &QApplication::focusChanged, this, [this](const QWidget *, const QWidget *now) {
        setActive(now != nullptr && isAncestorOf(now));
    });
    followRules();
}

RuleTile *TileStrip::makeTile(const TRulePtr &rule)
{
    auto *tile = new RuleTile(rule, this);
    tile->setActive(m_isActive);
    connect(tile, &RuleTile::clicked, this, [this, tile] { tilePressed(tile->rule()); });
    tile->show();
    return tile;
}

void TileStrip::takeOverTiles(const TRuleList &rules)
{
    std::unordered_multimap<const TRuleModel *, RuleTile *> former;
    for (RuleTile *tile : m_tiles)
        former.emplace(tile->rule().get(), tile);
    m_tiles.clear();
    for (const TRulePtr &rule : rules) {
        auto kept = former.extract(rule.get());
        m_tiles.push_back(kept ? kept.mapped() : makeTile(rule));
    }
    for (const auto &[rule, tile] : former) {
        tile->hide();
        tile->deleteLater();
    }
}

void TileStrip::followRules()
{
    const TRuleList &rules = m_document.ruleArray();
    const bool hadFocus = m_isActive;
    const TRuleList selectedBefore = m_selection.selected();
    setUpdatesEnabled(false);
    takeOverTiles(rules);
    m_selection.setRules(rules);
    m_insertionMark->raise();
    showMarks();
    chainTabs();
    updateGeometry();
    place();
    setUpdatesEnabled(true);
    Q_EMIT rearranged();
    if (hadFocus)
        focusRecipe();
    if (m_selection.selected() != selectedBefore)
        Q_EMIT selectionChanged();
}

void TileStrip::ruleChanged(const TRulePtr &rule)
{
    RuleTile *const tile = tileOf(rule);
    if (tile == nullptr)
        return;
    tile->ruleChanged();
    updateGeometry();
    place();
    Q_EMIT rearranged();
}

/// New tiles come last among the window's widgets, but not for the tabulator.
void TileStrip::chainTabs()
{
    QWidget *before = m_dropPlace;
    for (RuleTile *tile : m_tiles) {
        if (before->nextInFocusChain() != tile)
            setTabOrder(before, tile);
        before = tile;
    }
}

RuleTile *TileStrip::tileOf(const TRulePtr &rule) const
{
    const auto found = std::find_if(m_tiles.begin(), m_tiles.end(),
                                    [&](const RuleTile *tile) { return tile->rule() == rule; });
    return found == m_tiles.end() ? nullptr : *found;
}

void TileStrip::setEditedTile(const RuleTile *tile)
{
    m_edited = tile == nullptr ? nullptr : tile->rule();
    showMarks();
    if (tile != nullptr)
        Q_EMIT currentMoved(tile->geometry());
}

void TileStrip::showMarks()
{
    const qsizetype current = m_selection.current();
    for (std::size_t i = 0; i < m_tiles.size(); ++i) {
        RuleTile &tile = *m_tiles[i];
        tile.setMark(tile.rule() == m_edited               ? RuleTile::Mark::Edited
                     : m_selection.isSelected(tile.rule()) ? RuleTile::Mark::Selected
                                                           : RuleTile::Mark::None);
        tile.setFocusPolicy(static_cast<qsizetype>(i) == current ? Qt::StrongFocus
                                                                 : Qt::ClickFocus);
    }
    m_dropPlace->setFocusPolicy(m_tiles.empty() ? Qt::StrongFocus : Qt::ClickFocus);
}

void TileStrip::setActive(bool isActive)
{
    if (std::exchange(m_isActive, isActive) == isActive)
        return;
    for (RuleTile *tile : m_tiles)
        tile->setActive(isActive);
}

void TileStrip::selectionEdited(bool takesFocus)
{
    showMarks();
    if (takesFocus)
        focusRecipe();
    Q_EMIT selectionChanged();
}

void TileStrip::focusRecipe()
{
    QWidget *target = m_dropPlace;
    if (m_selection.current() >= 0)
        target = m_tiles[static_cast<std::size_t>(m_selection.current())];
    target->setFocus(Qt::OtherFocusReason);
    Q_EMIT currentMoved(target->geometry());
}

int TileStrip::lineHeight() const
{
    return TileDrawing::height(fontMetrics(), true);
}

int TileStrip::heightOfLines(int count) const
{
    return count * lineHeight() + (count - 1) * kLineSpacing;
}

FlowPlan TileStrip::plan(int width) const
{
    std::vector<FlowPlan::Item> items;
    items.reserve(m_tiles.size() + 1);
    for (const RuleTile *tile : m_tiles) {
        const int wish = tile->sizeHint().width();
        items.push_back({wish, wish});
    }
    items.push_back({m_tiles.empty() ? width : m_dropPlace->sizeHint().width(), 1});
    return FlowPlan::of(items, {std::max(width, 1), lineHeight(), -TileDrawing::kOverlap,
                                kLineSpacing, layoutDirection()});
}

void TileStrip::place()
{
    const FlowPlan flow = plan(width());
    for (std::size_t i = 0; i < m_tiles.size(); ++i)
        m_tiles[i]->setGeometry(flow.places[i]);
    // Takes what is left of the last line, but no line of its own.
    m_dropPlace->setGeometry(flow.places.back());
    m_dropPlace->setVisible(m_tiles.empty() ||
                            flow.places.back().width() >= DropPlace::leastWidth());
}

QSize TileStrip::sizeHint() const
{
    int width = m_dropPlace->sizeHint().width();
    for (const RuleTile *tile : m_tiles)
        width += tile->sizeHint().width() - TileDrawing::kOverlap;
    return {width, lineHeight()};
}

QSize TileStrip::minimumSizeHint() const
{
    return {DropPlace::leastWidth(), lineHeight()};
}

qsizetype TileStrip::placeAt(const QPoint &position) const
{
    const auto found = std::find_if(m_tiles.begin(), m_tiles.end(), [&](const RuleTile *tile) {
        return tile->geometry().contains(position);
    });
    return found == m_tiles.end() ? -1 : found - m_tiles.begin();
}

qsizetype TileStrip::placeInLine(int direction) const
{
    const qsizetype current = m_selection.current();
    if (current < 0)
        return current;
    const QRect from = m_tiles[static_cast<std::size_t>(current)]->geometry();
    const int y = from.center().y() + direction * (lineHeight() + kLineSpacing);
    qsizetype nearest = current;
    int leastWay = width() + 1;
    for (std::size_t i = 0; i < m_tiles.size(); ++i) {
        const QRect there = m_tiles[i]->geometry();
        const int way = std::abs(there.center().x() - from.center().x());
        if (there.top() <= y && y <= there.bottom() && way < leastWay) {
            nearest = static_cast<qsizetype>(i);
            leastWay = way;
        }
    }
    return nearest;
}

qsizetype TileStrip::insertionPlaceAt(const QPoint &position) const
{
    const bool isMirrored = layoutDirection() == Qt::RightToLeft;
    qsizetype place = 0;
    for (const RuleTile *tile : m_tiles) {
        const QRect there = tile->geometry();
        const int middle = there.center().x();
        const bool isBefore = isMirrored ? position.x() > middle : position.x() < middle;
        if (position.y() < there.top() || (position.y() <= there.bottom() && isBefore))
            return place;
        ++place;
    }
    return place;
}

/// Before its tile; past the last one, after that.
QRect TileStrip::insertionRect(qsizetype place) const
{
    const bool isMirrored = layoutDirection() == Qt::RightToLeft;
    const bool isEnd = place >= static_cast<qsizetype>(m_tiles.size());
    const QRect tile =
        (isEnd ? m_tiles.back() : m_tiles[static_cast<std::size_t>(place)])->geometry();
    const int x = isEnd ? tile.width() - TileDrawing::kOverlap / 2 : 0;
    const int middle = isMirrored ? tile.right() - x : tile.left() + x;
    const int left = std::clamp(middle - kMarkWidth / 2, 0, std::max(0, width() - kMarkWidth));
    return {left, tile.top(), kMarkWidth, tile.height()};
}

void TileStrip::showInsertion(qsizetype place)
{
    const bool isShown = place >= 0 && !m_tiles.empty();
    m_dropPlace->setInviting(place == static_cast<qsizetype>(m_tiles.size()));
    m_insertionMark->setVisible(isShown);
    if (isShown)
        m_insertionMark->setGeometry(insertionRect(place));
}

void TileStrip::resizeEvent(QResizeEvent *)
{
    place();
}

void TileStrip::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    switch (event->type()) {
    case QEvent::FontChange:
    case QEvent::StyleChange:
    case QEvent::LayoutDirectionChange:
        updateGeometry();
        place();
        Q_EMIT rearranged();
        break;
    default:
        break;
    }
}
