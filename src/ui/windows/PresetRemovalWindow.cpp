// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/PresetRemovalWindow.h"

#include "ui/windows/ClosingButton.h"
#include "ui/windows/PickList.h"
#include "ui/windows/RowDelegate.h"
#include "ui/windows/SheetParts.h"

#include <QAbstractListModel>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

namespace {

constexpr int kListHeight = 260;

class PresetModel : public QAbstractListModel
{
public:
    PresetModel(TRemovePresetsWindowController &presets, QObject *parent)
        : QAbstractListModel(parent)
        , m_presets(presets)
    {
        connect(&presets, &TRemovePresetsWindowController::tableReloaded, this, [this] {
            beginResetModel();
            endResetModel();
        });
    }
    int rowCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(m_presets.thePresets().size());
    }
    QVariant data(const QModelIndex &index, int role) const override
    {
        const TableCell cell = m_presets.cellView(index.row());
        switch (role) {
        case Qt::DisplayRole:
            return cell.text;
        case RowDelegate::kInkRole:
            return static_cast<int>(cell.ink);
        case Qt::ToolTipRole:
            return cell.ink == TableCell::Ink::Normal
                       ? m_presets.thePresets()[index.row()]
                       : PresetRemovalWindow::tr("Comes with Tavrin and cannot be removed.");
        default:
            return {};
        }
    }

private:
    TRemovePresetsWindowController &m_presets;
};

} // namespace

PresetRemovalWindow::PresetRemovalWindow(const TRemovePresetsWindowController::Services &services,
                                         PresetsManager presets, QWidget *window)
    : QDialog(window)
    , m_controller(services, std::move(presets))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowModality(Qt::WindowModal);
    setWindowTitle(tr("Delete Presets"));
    auto *list = new PickList(this);
    list->setAccessibleName(tr("Presets"));
    list->setPlaceholder(tr("There are no presets."));
    list->setMinimumHeight(kListHeight);
    list->setModel(new PresetModel(m_controller, this));
    auto *remove = new QPushButton(tr("&Remove"), this);
    remove->setAutoDefault(false);
    auto *done = new ClosingButton(tr("&Done"), this);
    done->setDefault(true);

    const auto enable = [this, remove] { remove->setEnabled(m_controller.removeButtonEnabled()); };
    enable();
    connect(&m_controller, &TRemovePresetsWindowController::removeButtonChanged, this, enable);
    connect(list, &PickList::rowPicked, this,
            [this](qsizetype row) { m_controller.rowSelected(row); });
    const auto removeRow = [this, list] {
        const QModelIndexList rows = list->selectionModel()->selectedIndexes();
        m_controller.removeLine(rows.isEmpty() ? -1 : rows.first().row());
        list->setFocus();
    };
    connect(remove, &QPushButton::clicked, this, removeRow);
    auto *key = new QShortcut(QKeySequence::Delete, list);
    key->setContext(Qt::WidgetShortcut);
    connect(key, &QShortcut::activated, this, removeRow);

    auto *layout = SheetParts::column(this);
    layout->addWidget(SheetParts::title(tr("Delete Presets"), this));
    layout->addWidget(SheetParts::muted(tr("Presets in grey come with Tavrin and stay."), this));
    layout->addWidget(SheetParts::framed(list, this), 1);
    layout->addSpacing(SheetParts::kGap);
    layout->addLayout(SheetParts::buttonRow({remove, done}));
    list->setFocus();
}
