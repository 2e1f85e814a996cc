// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/inspector/TagTree.h"

#include "document/TDocumentDrag.h"
#include "ui/controls/Icons.h"
#include "ui/controls/Theme.h"
#include "ui/images/ImageCanvas.h"
#include "ui/inspector/TagDelegate.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QDrag>
#include <QGuiApplication>
#include <QHeaderView>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QScopedValueRollback>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int kMargin = 16;
constexpr int kColumnGap = 4;
constexpr double kMostForNames = 0.6; ///< of the width
constexpr int kTileHeight = 28;
constexpr int kTilePadding = 10;
constexpr int kTileGap = 6;
constexpr int kMostCharacters = 40;
constexpr int kLeastRows = 5;

} // namespace

TagTree::TagTree(QWidget *parent)
    : QTreeView(parent)
{
    m_shown.setSourceModel(&m_model);
    m_shown.setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_shown.setFilterKeyColumn(-1);
    m_shown.setRecursiveFilteringEnabled(true);
    m_shown.setAutoAcceptChildRows(true);
    setModel(&m_shown);
    setAccessibleName(tr("Tags of the selected file"));
    setFrameShape(NoFrame);
    setUniformRowHeights(true);
    setIndentation(0); // the delegate's business
    setRootIsDecorated(false);
    setItemDelegate(new TagDelegate(this));
    setMouseTracking(true);
    setEditTriggers(NoEditTriggers);
    setExpandsOnDoubleClick(false);
    setDragEnabled(true);
    setDragDropMode(DragOnly);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextElideMode(Qt::ElideRight);
    header()->setStretchLastSection(true);
    header()->setMinimumSectionSize(0);
    header()->hide();
    connect(this, &QTreeView::clicked, this, [this](const QModelIndex &index) {
        if (entryAt(index) == nullptr)
            setExpanded(index, !isExpanded(index));
    });
    connect(this, &QTreeView::expanded, this,
            [this](const QModelIndex &group) { remember(group, true); });
    connect(this, &QTreeView::collapsed, this,
            [this](const QModelIndex &group) { remember(group, false); });
}

void TagTree::setGroups(std::vector<TagGroup> groups)
{
    m_model.setGroups(std::move(groups));
    openGroups();
    divide();
    restoreCurrent();
    viewport()->update();
}

void TagTree::setFilter(const QString &text)
{
    m_shown.setFilterFixedString(text);
    openGroups();
    viewport()->update();
}

void TagTree::setEmptyText(const QString &text)
{
    m_emptyText = text;
    viewport()->update();
}

/// It takes what there is, and needs no more than this.
QSize TagTree::sizeHint() const
{
    return minimumSizeHint();
}

QSize TagTree::minimumSizeHint() const
{
    return {QTreeView::minimumSizeHint().width(),
            kLeastRows * TagDelegate::rowHeight(fontMetrics())};
}

const TagEntry *TagTree::entryAt(const QModelIndex &index) const
{
    return m_model.entry(m_shown.mapToSource(index));
}

QString TagTree::groupTitle(const QModelIndex &group) const
{
    return group.siblingAtColumn(TagModel::NameColumn).data().toString();
}

/// While there is a filter, what it found is in sight.
void TagTree::openGroups()
{
    const QScopedValueRollback opening(m_isOpening, true);
    const bool isFiltered = !m_shown.filterRegularExpression().pattern().isEmpty();
    for (int row = 0; row < m_shown.rowCount(); ++row) {
        const QModelIndex group = m_shown.index(row, 0);
        const auto source = static_cast<std::size_t>(m_shown.mapToSource(group).row());
        const bool isOpen = m_isOpen.value(groupTitle(group), m_model.groups()[source].isOpen);
        setExpanded(group, isFiltered || isOpen);
        setFirstColumnSpanned(row, {}, true);
    }
}

void TagTree::remember(const QModelIndex &group, bool isOpen)
{
    if (!m_isOpening)
        m_isOpen.insert(groupTitle(group), isOpen);
}

void TagTree::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QTreeView::currentChanged(current, previous);
    if (const TagEntry *const entry = entryAt(current)) {
        m_currentGroup = groupTitle(current.parent());
        m_currentTag = entry->name;
    }
}

/// The tag that was current in the file before, when this one has it too.
void TagTree::restoreCurrent()
{
    for (int row = 0; row < m_shown.rowCount(); ++row) {
        const QModelIndex parent = m_shown.index(row, 0);
        if (groupTitle(parent) != m_currentGroup)
            continue;
        const QModelIndexList found = m_shown.match(m_shown.index(0, 0, parent), Qt::DisplayRole,
                                                    m_currentTag, 1, Qt::MatchExactly);
        if (!found.isEmpty())
            selectionModel()->setCurrentIndex(found[0], QItemSelectionModel::ClearAndSelect |
                                                            QItemSelectionModel::Rows);
        return;
    }
}

void TagTree::add(const QModelIndex &index)
{
    const TagEntry *const entry = entryAt(index);
    if (const TRulePtr rule = entry != nullptr ? entry->rule() : nullptr)
        Q_EMIT addRequested(rule);
}

void TagTree::copy(const QModelIndex &index) const
{
    if (const TagEntry *const entry = entryAt(index))
        QGuiApplication::clipboard()->setText(entry->text());
}

void TagTree::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && entryAt(currentIndex()) != nullptr)
        add(currentIndex());
    else if (isEnter)
        setExpanded(currentIndex(), !isExpanded(currentIndex()));
    else if (event->matches(QKeySequence::Copy))
        copy(currentIndex());
    else
        QTreeView::keyPressEvent(event);
}

void TagTree::mouseDoubleClickEvent(QMouseEvent *event)
{
    QTreeView::mouseDoubleClickEvent(event);
    if (event->button() == Qt::LeftButton)
        add(indexAt(event->position().toPoint()));
}

void TagTree::contextMenuEvent(QContextMenuEvent *event)
{
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    const QPersistentModelIndex index = isByKey ? currentIndex() : indexAt(event->pos());
    const TagEntry *const entry = entryAt(index);
    if (entry == nullptr)
        return;
    auto *const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction *const addAction =
        menu->addAction(tr("&Add to Recipe"), this, [this, index] { add(index); });
    addAction->setEnabled(!entry->ruleKind.isEmpty());
    menu->addSeparator();
    menu->addAction(Icons::icon("copy"_L1), tr("&Copy Value"), this,
                    [this, index] { copy(index); });
    menu->popup(isByKey ? viewport()->mapToGlobal(visualRect(index).center()) : event->globalPos());
}

void TagTree::startDrag(Qt::DropActions)
{
    std::unique_ptr<QMimeData> mail(m_shown.mimeData({currentIndex()}));
    if (!mail)
        return;
    const TRuleList rules = TDocumentDrag::rules(*mail);
    auto *const drag = new QDrag(this); // Qt's own, which deletes it when it has ended
    drag->setMimeData(mail.release());
    if (!rules.empty())
        drag->setPixmap(picture(*rules[0]));
    drag->exec(Qt::CopyAction);
}

/// The tile that the recipe will get.
QPixmap TagTree::picture(const TRuleModel &rule) const
{
    const QColor ground = Theme::tileColor(rule.theColor(), palette());
    const QColor ink = Theme::inkOn(ground);
    const int side = Icons::extent(fontMetrics());
    const int room = fontMetrics().averageCharWidth() * kMostCharacters;
    const QString name = fontMetrics().elidedText(rule.name(), Qt::ElideMiddle, room);
    const int textWidth = fontMetrics().horizontalAdvance(name);
    const int height = std::max(kTileHeight, fontMetrics().height() + kTileGap);
    const QSize size(2 * kTilePadding + side + kTileGap + textWidth, height);
    ImageCanvas canvas(size, devicePixelRatioF());
    canvas->setPen(Qt::NoPen);
    canvas->setBrush(ground);
    canvas->drawRoundedRect(QRect(QPoint(), size), Theme::kFieldRadius, Theme::kFieldRadius);
    canvas->drawPixmap(kTilePadding, (height - side) / 2,
                       Icons::pixmap(Icons::forRule(rule), side, ink, devicePixelRatioF()));
    canvas->setPen(ink);
    canvas->setFont(font());
    canvas->drawText(QRect(kTilePadding + side + kTileGap, 0, textWidth, height), Qt::AlignVCenter,
                     name);
    return QPixmap::fromImage(canvas.finish());
}

void TagTree::paintEvent(QPaintEvent *event)
{
    QTreeView::paintEvent(event);
    if (m_shown.rowCount() > 0)
        return;
    QPainter painter(viewport());
    painter.setPen(ThemeColors::of(palette()).muted);
    painter.drawText(viewport()->rect().adjusted(kMargin, kMargin, -kMargin, -kMargin),
                     static_cast<int>(Qt::AlignHCenter) | Qt::AlignTop | Qt::TextWordWrap,
                     m_model.groups().empty() ? m_emptyText : tr("No tag matches."));
}

void TagTree::resizeEvent(QResizeEvent *event)
{
    QTreeView::resizeEvent(event);
    divide();
}

/// Names get as much room as they need, but leave some to the values.
void TagTree::divide()
{
    int widest = 0;
    for (const TagGroup &group : m_model.groups()) {
        for (const TagEntry &entry : group.entries)
            widest = std::max(widest, fontMetrics().horizontalAdvance(entry.name));
    }
    header()->resizeSection(TagModel::NameColumn,
                            std::min(TagDelegate::indentation(fontMetrics()) + widest + kColumnGap +
                                         TagDelegate::kPadding,
                                     static_cast<int>(viewport()->width() * kMostForNames)));
}

void TagTree::changeEvent(QEvent *event)
{
    QTreeView::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        divide();
}
