// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/ErrorLogView.h"

#include "commonprocs/ByteNames.h"
#include "ui/controls/Icons.h"
#include "ui/windows/MutedLabel.h"
#include "ui/windows/RowDelegate.h"
#include "ui/windows/SheetParts.h"

#include <QAbstractListModel>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListView>
#include <QLocale>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int kCharacters = 60;
constexpr int kMostCharacters = 120;
/// What a popover has around the list, and of the window around itself.
constexpr int kAround = 120;
/// What a row has beside its text.
constexpr int kInRow = 48;
constexpr int kShownRows = 10;
constexpr qsizetype kMostWrapped = 500;

class LogModel : public QAbstractListModel
{
public:
    LogModel(TErrorLog log, QObject *parent)
        : QAbstractListModel(parent)
        , m_log(std::move(log))
    {
    }
    int rowCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(m_log.count());
    }
    QVariant data(const QModelIndex &index, int role) const override
    {
        const TErrorTypes &entry = m_log.entries()[static_cast<std::size_t>(index.row())];
        switch (role) {
        case Qt::DisplayRole:
            return SheetParts::breakable(entry.errDesc.toString());
        case Qt::EditRole:
            return ByteNames::withoutLoneSurrogates(entry.errDesc.toString());
        case Qt::DecorationRole:
            return Icons::forLevel(entry.errClass);
        case Qt::ToolTipRole:
            return m_log.count() > kMostWrapped
                       ? QVariant(ByteNames::forDisplay(entry.errDesc.toString()))
                       : QVariant();
        case Qt::AccessibleTextRole:
            return levelName(entry.errClass) + ": "_L1 + entry.errDesc.toString();
        default:
            return {};
        }
    }
    static QString levelName(int level)
    {
        switch (level) {
        case TErrorTypes::kWarning:
            return ErrorLogView::tr("Warning");
        case TErrorTypes::kCritical:
            return ErrorLogView::tr("Critical");
        default:
            return ErrorLogView::tr("Note");
        }
    }

private:
    TErrorLog m_log;
};

/// "2 critical problems, 1 warning"
QString summary(const TErrorLog &log)
{
    QStringList parts;
    const auto add = [&](int level, const QString &one, const QString &many) {
        const qsizetype count = log.numberOfErrorsWithType(level);
        if (count > 0)
            parts += count == 1 ? one : many.arg(QLocale().toString(static_cast<qlonglong>(count)));
    };
    add(TErrorTypes::kCritical, ErrorLogView::tr("1 critical problem"),
        ErrorLogView::tr("%1 critical problems"));
    add(TErrorTypes::kWarning, ErrorLogView::tr("1 warning"), ErrorLogView::tr("%1 warnings"));
    return parts.isEmpty() ? ErrorLogView::tr("Notes") : parts.join(", "_L1);
}

/// The selected problems, or all of them when none is.
void copy(const QListView &list)
{
    QList<int> rows;
    for (const QModelIndex &index : list.selectionModel()->selectedIndexes())
        rows += index.row();
    std::sort(rows.begin(), rows.end());
    QStringList lines;
    const qsizetype count = rows.isEmpty() ? list.model()->rowCount() : rows.size();
    for (qsizetype i = 0; i < count; ++i) {
        const int row = rows.isEmpty() ? static_cast<int>(i) : rows[i];
        lines += list.model()->index(row, 0).data(Qt::EditRole).toString();
    }
    QApplication::clipboard()->setText(lines.join(u'\n'));
}

void offer(QListView *list, const QString &text, QKeySequence::StandardKey key,
           const std::function<void()> &run)
{
    auto *action = new QAction(text, list);
    action->setShortcut(key);
    action->setShortcutContext(Qt::WidgetShortcut);
    QObject::connect(action, &QAction::triggered, list, run);
    list->addAction(action);
}

/// Of the widest text among the first ones.
int textWidth(const TErrorLog &log, const QFontMetrics &metrics)
{
    int width = 0;
    const qsizetype count = std::min(log.count(), kMostWrapped);
    for (qsizetype i = 0; i < count; ++i) {
        const TErrorTypes &entry = log.entries()[static_cast<std::size_t>(i)];
        width = std::max(
            width, metrics.horizontalAdvance(ByteNames::forDisplay(entry.errDesc.toString())));
    }
    return width;
}

} // namespace

/// The rows of a short list are as high as their wrapped texts; those of a long one have one line,
/// since all would have to be measured first.
class ErrorLogView::List : public QListView
{
public:
    List(const TErrorLog &log, ErrorLogView &view)
        : QListView(&view)
        , m_view(view)
        , m_textWidth(textWidth(log, fontMetrics()))
    {
        setFrameShape(NoFrame);
        setItemDelegate(new RowDelegate(this));
        setModel(new LogModel(log, this));
        setSelectionMode(ExtendedSelection);
        const bool isShort = log.count() <= kMostWrapped;
        setWordWrap(isShort);
        setUniformItemSizes(!isShort);
        setTextElideMode(isShort ? Qt::ElideNone : Qt::ElideMiddle);
        const int side = Icons::extent(fontMetrics());
        setIconSize({side, side});
        setResizeMode(Adjust);
        setVerticalScrollMode(ScrollPerPixel);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setContextMenuPolicy(Qt::ActionsContextMenu);
        offer(this, ErrorLogView::tr("Copy"), QKeySequence::Copy, [this] { copy(*this); });
        offer(this, ErrorLogView::tr("Select All"), QKeySequence::SelectAll,
              [this] { selectAll(); });
        setAccessibleName(ErrorLogView::tr("Problems"));
        connect(this, &QListView::clicked, &view, [&view](const QModelIndex &index) {
            if (QApplication::keyboardModifiers() == Qt::NoModifier) // else it selects
                Q_EMIT view.problemChosen(index.row());
        });
    }
    QSize sizeHint() const override
    {
        const int least = SheetParts::widthOf(this, kCharacters);
        const int most =
            std::min(SheetParts::widthOf(this, kMostCharacters), window()->width() - kAround);
        const int wish = m_textWidth + kInRow + verticalScrollBar()->sizeHint().width();
        const int width = std::clamp(wish, least, std::max(least, most));
        const int row = RowDelegate::rowHeight(fontMetrics());
        const int count = model()->rowCount();
        int height = 4;
        QStyleOptionViewItem option;
        initViewItemOption(&option);
        option.rect = QRect(0, 0, width - 2, row);
        for (int i = 0; i < std::min(count, kShownRows) && height < kShownRows * row; ++i)
            height += itemDelegate()->sizeHint(option, model()->index(i, 0)).height();
        return {width, std::min(height, kShownRows * row)};
    }
    QSize minimumSizeHint() const override { return {0, RowDelegate::rowHeight(fontMetrics())}; }

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
        if (isReturn && currentIndex().isValid())
            Q_EMIT m_view.problemChosen(currentIndex().row());
        else if (!SheetParts::takesFirstStep(*this, *event))
            QListView::keyPressEvent(event);
    }

private:
    ErrorLogView &m_view;
    int m_textWidth;
};

ErrorLogView::ErrorLogView(const TErrorLog &log, const QString &note, QWidget *parent)
    : QWidget(parent)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(SheetParts::kGap);
    if (log.isEmpty()) {
        auto *none = new QLabel(note.isEmpty() ? tr("No problems found.") : note, this);
        none->setTextFormat(Qt::PlainText);
        setAccessibleName(none->text());
        layout->addWidget(none);
        return;
    }
    setAccessibleName(summary(log));
    layout->addWidget(SheetParts::title(summary(log), this));
    auto *list = new List(log, *this);
    layout->addWidget(list);
    setFocusProxy(list);
}

void ErrorLogView::offerFiles()
{
    auto *only = new QPushButton(tr("Show Only Files With Problems"), this);
    only->setAutoDefault(false);
    connect(only, &QPushButton::clicked, this, &ErrorLogView::problemFilesWanted);
    auto *foot = new QHBoxLayout;
    foot->addWidget(new MutedLabel(tr("A click or Return leads to the file."), this), 1);
    foot->addWidget(only);
    static_cast<QVBoxLayout *>(layout())->addLayout(foot);
}
