// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/ListFrame.h"

#include "ui/controls/Theme.h"

#include <QEvent>
#include <QHeaderView>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int kBorder = 3; ///< keeps the rows out of the round corners
constexpr int kAroundText = 8;
constexpr int kInset = 5; ///< of a cell's content, beside the margin that the style gives it

/// Paints rows: the selection softly, texts in their weight.
class RowDelegate : public QStyledItemDelegate
{
public:
    RowDelegate(ListFrame::WeightOf weightOf, QObject *parent)
        : QStyledItemDelegate(parent)
        , m_weightOf(std::move(weightOf))
    {
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override
    {
        QStyleOptionViewItem row = option;
        if (row.state.testFlag(QStyle::State_Selected) ||
            m_weightOf(index) == ListFrame::Weight::Marked)
            painter->fillRect(row.rect, ThemeColors::of(row.palette).selection);
        row.state &= ~(QStyle::State_HasFocus | QStyle::State_MouseOver);
        row.rect.adjust(kInset, 0, -kInset, 0);
        QStyledItemDelegate::paint(painter, row, index);
    }

    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &) const override
    {
        editor->setGeometry(option.rect);
    }

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        QSize size = QStyledItemDelegate::sizeHint(option, index);
        size.setHeight(ListFrame::rowHeight(*option.widget));
        return size;
    }

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        const ListFrame::Weight weight = m_weightOf(index);
        const ThemeColors colors = ThemeColors::of(option->palette);
        const bool isSelected = option->state.testFlag(QStyle::State_Selected);
        const bool isMuted = weight == ListFrame::Weight::Muted && !isSelected;
        option->palette.setColor(QPalette::Text, isMuted ? colors.muted : colors.ink);
        option->state &= ~QStyle::State_Selected; // painted already
        if (weight == ListFrame::Weight::Strong)
            option->font.setWeight(QFont::DemiBold);
    }

private:
    const ListFrame::WeightOf m_weightOf;
};

int headerHeight(const QAbstractItemView &view)
{
    int height = 0;
    for (const QHeaderView *header : view.findChildren<QHeaderView *>())
        if (header->orientation() == Qt::Horizontal && !header->isHidden())
            height = std::max(height, header->sizeHint().height());
    return height;
}

} // namespace

ListFrame::ListFrame(QAbstractItemView *view, int shownRows, const WeightOf &weightOf,
                     QWidget *parent)
    : QWidget(parent)
    , m_view(view)
    , m_shownRows(shownRows)
{
    auto *box = new QVBoxLayout(this);
    box->setContentsMargins(kBorder, kBorder, kBorder, kBorder);
    box->addWidget(view);
    view->setFrameShape(QFrame::NoFrame);
    view->setItemDelegate(new RowDelegate(weightOf, view));
    view->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    view->viewport()->setAutoFillBackground(false);
    view->installEventFilter(this);
    setFocusProxy(view);
}

int ListFrame::rowHeight(const QWidget &widget)
{
    return std::max(Theme::kRowHeight, widget.fontMetrics().height() + kAroundText);
}

QSize ListFrame::sizeHint() const
{
    return {m_view->minimumWidth() + 2 * kBorder,
            m_shownRows * rowHeight(*this) + headerHeight(*m_view) + 2 * kBorder};
}

bool ListFrame::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
        update();
    return QWidget::eventFilter(watched, event);
}

void ListFrame::paintEvent(QPaintEvent *)
{
    const ThemeColors colors = ThemeColors::of(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(m_view->hasFocus() ? QPen(colors.accent, 1.5) : QPen(colors.border, 1));
    painter.setBrush(colors.card);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Theme::kFieldRadius,
                            Theme::kFieldRadius);
}
