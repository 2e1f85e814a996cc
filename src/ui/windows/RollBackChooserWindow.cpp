// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/RollBackChooserWindow.h"

#include "commonprocs/ByteNames.h"
#include "ui/controls/ToolTip.h"
#include "ui/windows/LogDelegate.h"
#include "ui/windows/PickList.h"
#include "ui/windows/RowDelegate.h"
#include "ui/windows/SheetParts.h"

#include <QAbstractListModel>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr int kCharacters = 80;
constexpr int kLines = 31;

class LogsModel : public QAbstractListModel
{
public:
    LogsModel(TRollBackWindowController &chooser, QObject *parent)
        : QAbstractListModel(parent)
        , m_chooser(chooser)
    {
        connect(&chooser, &TRollBackWindowController::tableReloaded, this, [this] {
            beginResetModel();
            endResetModel();
        });
        connect(&chooser, &TRollBackWindowController::summaryCame, this, [this](qsizetype row) {
            const QModelIndex changed = index(static_cast<int>(row), 0);
            Q_EMIT dataChanged(changed, changed);
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
        case LogDelegate::kSummaryRole:
            return summary(index.row());
        case Qt::AccessibleTextRole:
            return accessibleText(index.row());
        case Qt::DecorationRole:
            return RowDelegate::icon(m_chooser.logName(index.row()).image);
        case Qt::ToolTipRole:
            return ToolTip::of(ByteNames::forDisplay(m_chooser.theLogs()[index.row()].path()));
        default:
            return {};
        }
    }

private:
    /// Empty while the log is not known.
    QString summary(int row) const
    {
        const std::optional<RollbackLogSummary> &run = m_chooser.summary(row);
        if (!run || run->files < 0)
            return {};
        const QString files =
            run->files == 1
                ? RollBackChooserWindow::tr("1 file")
                : RollBackChooserWindow::tr("%1 files").arg(QLocale().toString(run->files));
        if (!run->folder)
            return files;
        const QString folder = ByteNames::forDisplay(run->folder->name());
        return (run->hasMoreFolders ? RollBackChooserWindow::tr("%1 in %2 and other folders")
                                    : RollBackChooserWindow::tr("%1 in %2"))
            .arg(files, folder);
    }
    QString accessibleText(int row) const
    {
        const QString name = ByteNames::forDisplay(m_chooser.logName(row).text);
        const QString date = LogDelegate::readableDate(name);
        return QStringList{date.isEmpty() ? name : date, summary(row)}.join(u", "_s);
    }

    TRollBackWindowController &m_chooser;
};

} // namespace

RollBackChooserWindow::RollBackChooserWindow(TRollBackWindowController &chooser, QWidget *parent)
    : QDialog(parent)
    , m_chooser(chooser)
{
    setWindowModality(Qt::ApplicationModal);
    setWindowTitle(tr("Roll Back an Earlier Run"));
    PickList *list = m_list = new PickList(this);
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

/// Return without a picked run picks the newest one; the next chooses it.
void RollBackChooserWindow::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && !m_chooser.chooseButtonEnabled() && m_list->model()->rowCount() > 0)
        m_list->setCurrentIndex(m_list->model()->index(0, 0));
    else
        QDialog::keyPressEvent(event);
}
