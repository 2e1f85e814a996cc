// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/ExtensionMapTable.h"

#include "ui/editors/ListFrame.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QToolButton>

namespace {

constexpr int kShownRows = 5;
constexpr int kGap = 4;
constexpr int kLeastRows = 3;

} // namespace

ExtensionMapTable::ExtensionMapTable(QWidget *parent)
    : QWidget(parent)
    , m_model(new ExtensionMapModel(this))
    , m_table(new QTableView(this))
{
    m_table->setModel(m_model);
    m_table->setAccessibleName(tr("Extensions and what they become"));
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setShowGrid(false);
    m_table->setTabKeyNavigation(false);
    m_table->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::SelectedClicked |
                             QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
    m_table->setMinimumHeight(kLeastRows * ListFrame::rowHeight(*this));
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setDefaultSectionSize(ListFrame::rowHeight(*this));
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_table->horizontalHeader()->setHighlightSections(false);
    m_table->horizontalHeader()->setMinimumHeight(ListFrame::rowHeight(*this));
    m_table->installEventFilter(this);
    auto *row = new QVBoxLayout(this);
    row->setContentsMargins({});
    row->setSpacing(kGap);
    row->addWidget(new ListFrame(
                       m_table, kShownRows,
                       [](const QModelIndex &cell) {
                           return cell.data(Qt::EditRole).toString().isEmpty()
                                      ? ListFrame::Weight::Muted
                                      : ListFrame::Weight::Plain;
                       },
                       this),
                   1);
    addButtons();
    setFocusProxy(m_table);
    connect(m_model, &ExtensionMapModel::edited, this, &ExtensionMapTable::edited);
    connect(m_model, &ExtensionMapModel::edited, this, &ExtensionMapTable::updateButtons);
    connect(m_table->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &ExtensionMapTable::updateButtons);
    updateButtons();
}

QToolButton *ExtensionMapTable::button(const QString &text, const QString &name,
                                       void (ExtensionMapTable::*act)())
{
    auto *made = new QToolButton(this);
    made->setText(text);
    made->setAutoRaise(true);
    made->setToolTip(name);
    made->setAccessibleName(name);
    made->setFocusPolicy(Qt::TabFocus);
    connect(made, &QToolButton::clicked, this, act);
    return made;
}

void ExtensionMapTable::addButtons()
{
    auto *line = new QHBoxLayout;
    line->setSpacing(kGap);
    line->addWidget(button(tr("+"), tr("Add a pair (Insert)"), &ExtensionMapTable::addPair));
    m_remove = button(tr("\u2212"), tr("Remove the pair (Delete)"), &ExtensionMapTable::removePair);
    m_up = button(tr("\u2191"), tr("Move the pair up (Alt+Up)"), &ExtensionMapTable::moveUp);
    m_down =
        button(tr("\u2193"), tr("Move the pair down (Alt+Down)"), &ExtensionMapTable::moveDown);
    for (QToolButton *each : {m_remove, m_up, m_down})
        line->addWidget(each);
    line->addStretch();
    static_cast<QBoxLayout *>(layout())->addLayout(line);
}

void ExtensionMapTable::setPairs(const std::vector<TExtensionMap> &pairs)
{
    if (pairs == m_model->pairs())
        return;
    const int row = m_table->currentIndex().row();
    m_model->setPairs(pairs);
    m_table->setCurrentIndex(m_model->index(std::min(row, m_model->rowCount() - 1), 0));
    updateButtons();
}

void ExtensionMapTable::addPair()
{
    const int row =
        m_model->addBelow(m_table->currentIndex().isValid() ? m_table->currentIndex().row()
                                                            : m_model->rowCount() - 1);
    const QModelIndex first = m_model->index(row, ExtensionMapModel::kOriginal);
    m_table->setFocus();
    m_table->setCurrentIndex(first);
    m_table->edit(first);
}

void ExtensionMapTable::removePair()
{
    m_model->remove(m_table->currentIndex().row());
    updateButtons();
}

void ExtensionMapTable::movePair(bool up)
{
    m_model->move(m_table->currentIndex().row(), up);
    m_table->scrollTo(m_table->currentIndex());
    updateButtons();
}

void ExtensionMapTable::updateButtons()
{
    const int row = m_table->currentIndex().row();
    m_remove->setEnabled(row >= 0);
    m_up->setEnabled(row > 0);
    m_down->setEnabled(row >= 0 && row + 1 < m_model->rowCount());
}

bool ExtensionMapTable::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_table && event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        const bool isAlt = key->modifiers().testFlag(Qt::AltModifier);
        if (key->key() == Qt::Key_Insert)
            addPair();
        else if (key->key() == Qt::Key_Delete)
            removePair();
        else if (isAlt && (key->key() == Qt::Key_Up || key->key() == Qt::Key_Down))
            movePair(key->key() == Qt::Key_Up);
        else
            return false;
        return true;
    }
    return QWidget::eventFilter(watched, event);
}
