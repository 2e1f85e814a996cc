// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/RollBackChooserWindow.h"

#include "commonprocs/ByteNames.h"
#include "ui/controls/ToolTip.h"
#include "ui/windows/LogDelegate.h"
#include "ui/windows/PickList.h"
#include "ui/windows/RowDelegate.h"
#include "ui/windows/SheetParts.h"

#include <QAbstractListModel>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int kCharacters = 80;
constexpr int kLines = 31;

class LogsModel : public QAbstractListModel
{
public:
    LogsModel(const TRollBackWindowController &chooser, QObject *parent)
        : QAbstractListModel(parent)
        , m_chooser(chooser)
    {
        connect(&chooser, &TRollBackWindowController::tableReloaded, this, [this] {
            beginResetModel();
            endResetModel();
        });
    }
    int rowCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(m_chooser.theLogs().size());
    }
    QVariant data(const QModelIndex &index, int role) const override
    {
        switch (role) {
        case Qt::DisplayRole:
            return ByteNames::forDisplay(m_chooser.logName(index.row()).text);
        case Qt::DecorationRole:
            return RowDelegate::icon(m_chooser.logName(index.row()).image);
        case Qt::ToolTipRole:
            return ToolTip::of(ByteNames::forDisplay(m_chooser.theLogs()[index.row()].path()));
        default:
            return {};
        }
    }

private:
    const TRollBackWindowController &m_chooser;
};

} // namespace

RollBackChooserWindow::RollBackChooserWindow(TRollBackWindowController &chooser, QWidget *parent)
    : QDialog(parent)
    , m_chooser(chooser)
{
    setWindowModality(Qt::ApplicationModal);
    setWindowTitle(tr("Roll Back an Earlier Run"));
    auto *list = new PickList(this);
    list->setAccessibleName(tr("Saved runs, newest first"));
    list->setPlaceholder(
        tr("No run has been saved yet. Every run that renames files is listed here "
           "from then on."));
    list->setItemDelegate(new LogDelegate(list));
    list->setModel(new LogsModel(chooser, this));
    auto *cancel = new QPushButton(tr("Cancel"), this);
    cancel->setAutoDefault(false);
    auto *choose = new QPushButton(tr("&Choose"), this);
    choose->setDefault(true);

    const auto enable = [this, choose] { choose->setEnabled(m_chooser.chooseButtonEnabled()); };
    enable();
    connect(&chooser, &TRollBackWindowController::chooseButtonChanged, this, enable);
    connect(list, &PickList::rowPicked, this, [this](qsizetype row) { m_chooser.rowClicked(row); });
    connect(list, &QListView::doubleClicked, this,
            [this](const QModelIndex &index) { m_chooser.rowDoubleClicked(index.row()); });
    connect(choose, &QPushButton::clicked, this, [this] { m_chooser.chooseRollback(); });
    connect(cancel, &QPushButton::clicked, this, &RollBackChooserWindow::reject);

    auto *layout = SheetParts::column(this);
    layout->addWidget(SheetParts::title(tr("Which run do you want to roll back?"), this));
    layout->addWidget(
        SheetParts::muted(tr("You will see what can be undone before anything is renamed."), this));
    layout->addWidget(SheetParts::framed(list, this), 1);
    layout->addSpacing(SheetParts::kGap);
    layout->addLayout(SheetParts::buttonRow({cancel, choose}));
    list->setFocus();
    resize(SheetParts::sizeOf(this, kCharacters, kLines));
}

/// The controller's owner takes the window away.
void RollBackChooserWindow::reject()
{
    m_chooser.cancel();
}
