// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/FolderAccessView.h"

#include "commonprocs/ByteNames.h"
#include "ui/controls/ToolTip.h"
#include "ui/windows/ClosingButton.h"
#include "ui/windows/RowDelegate.h"
#include "ui/windows/SheetParts.h"

#include <QAbstractTableModel>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QTableView>
#include <QVBoxLayout>

#include <array>

using Controller = TFolderAccessViewController;

namespace {

constexpr std::array kColumns{Controller::kStatusColumn, Controller::kNameColumn,
                              Controller::kGrantColumn};
constexpr int kStatus = 0;
constexpr int kName = 1;
constexpr int kGrant = 2;
constexpr int kRowRoom = 16;
constexpr int kCharacters = 75;
constexpr int kLines = 26;

} // namespace

class FolderAccessView::Model : public QAbstractTableModel
{
public:
    Model(const Controller &folders, const TFolderAccessList &list, QObject *parent)
        : QAbstractTableModel(parent)
        , m_folders(folders)
        , m_list(list)
    {
    }
    void refresh()
    {
        beginResetModel();
        endResetModel();
    }
    int rowCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(m_folders.rows());
    }
    int columnCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(kColumns.size());
    }
    QVariant data(const QModelIndex &index, int role) const override
    {
        const bool isOpen = !m_folders.offersGrant(index.row());
        const QString state = isOpen ? tr("Granted") : tr("Not granted");
        const TableCell cell =
            m_folders.cell(index.row(), kColumns[static_cast<std::size_t>(index.column())]);
        switch (role) {
        case Qt::DisplayRole:
            return index.column() == kGrant ? isOpen ? QVariant() : tr("Grant...")
                                            : QVariant(ByteNames::forDisplay(cell.text));
        case Qt::DecorationRole:
            return cell.image.isSet() ? QVariant(RowDelegate::icon(cell.image)) : QVariant();
        case Qt::ToolTipRole:
            return index.column() == kStatus
                       ? state
                       : ToolTip::of(ByteNames::forDisplay(pathOf(index.row())));
        case Qt::AccessibleTextRole:
            return index.column() == kStatus ? QVariant(state) : QVariant();
        default:
            return {};
        }
    }
    static QString tr(const char *text) { return FolderAccessView::tr(text); }

private:
    QString pathOf(int row) const
    {
        return m_list.folders()[static_cast<std::size_t>(row)].theURL().path();
    }

    const Controller &m_folders;
    const TFolderAccessList &m_list;
};

namespace {

/// Draws the grant control as a button; the view's clicks and keys work it.
class GrantDelegate : public RowDelegate
{
public:
    using RowDelegate::RowDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override
    {
        QStyleOptionViewItem blank(option);
        initStyleOption(&blank, index);
        blank.text.clear();
        const QStyle *style = option.widget->style();
        style->drawControl(QStyle::CE_ItemViewItem, &blank, painter, option.widget);
        const QString text = index.data().toString();
        if (text.isEmpty())
            return;
        QStyleOptionButton button;
        button.initFrom(option.widget);
        button.state = QStyle::State_Enabled | QStyle::State_Raised;
        button.rect = option.rect.adjusted(4, 3, -4, -3);
        button.text = text;
        style->drawControl(QStyle::CE_PushButton, &button, painter, option.widget);
    }
};

QTableView *makeTable(QAbstractItemModel *model, QWidget *parent)
{
    auto *table = new QTableView(parent);
    table->setModel(model);
    table->setItemDelegate(new RowDelegate(table));
    table->setItemDelegateForColumn(kGrant, new GrantDelegate(table));
    table->setFrameShape(QFrame::NoFrame);
    table->setShowGrid(false);
    table->setWordWrap(false);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    table->setTabKeyNavigation(false);
    table->horizontalHeader()->hide();
    table->verticalHeader()->hide();
    const QFontMetrics metrics = table->fontMetrics();
    table->verticalHeader()->setDefaultSectionSize(RowDelegate::rowHeight(metrics) + kRowRoom / 2);
    table->horizontalHeader()->setSectionResizeMode(kName, QHeaderView::Stretch);
    table->setColumnWidth(kStatus, RowDelegate::rowHeight(metrics) + kRowRoom / 2);
    table->setColumnWidth(kGrant, metrics.horizontalAdvance(FolderAccessView::tr("Grant...")) +
                                      3 * kRowRoom);
    return table;
}

} // namespace

FolderAccessView::FolderAccessView(TFolderAccessList &list, TDialogHost &host,
                                   Notifications &notifications, QWidget *window)
    : QDialog(window)
    , m_controller(list, host, notifications)
    , m_model(new Model(m_controller, list, this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Folder Access"));
    m_gotAuthorized = notifications.subscribe(Notifications::kGotAuthorized,
                                              [this](const QVariantMap &) { refresh(); });
    QTableView *table = makeTable(m_model, this);
    table->setAccessibleName(tr("Folders of this batch"));
    connect(table, &QTableView::clicked, this, [this](const QModelIndex &index) {
        if (index.column() == kGrant)
            m_controller.grant(index.row());
    });
    for (const auto key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
        auto *shortcut = new QShortcut(key, table);
        shortcut->setContext(Qt::WidgetShortcut);
        connect(shortcut, &QShortcut::activated, this, [this, table] {
            if (table->currentIndex().isValid())
                m_controller.grant(table->currentIndex().row());
        });
    }
    auto *done = new ClosingButton(tr("&Done"), this);
    done->setAutoDefault(false);

    auto *layout = SheetParts::column(this);
    layout->addWidget(SheetParts::title(tr("Folder Access"), this));
    layout->addWidget(SheetParts::muted(
        tr("The folders of this batch. Files can be renamed in folders that are granted."), this));
    layout->addWidget(SheetParts::framed(table, this), 1);
    layout->addSpacing(SheetParts::kGap);
    layout->addLayout(SheetParts::buttonRow({done}));
    table->setFocus();
    resize(SheetParts::sizeOf(this, kCharacters, kLines));
}

void FolderAccessView::refresh()
{
    m_model->refresh();
}
