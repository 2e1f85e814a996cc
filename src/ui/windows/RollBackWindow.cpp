// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/RollBackWindow.h"

#include "ui/controls/Popover.h"
#include "ui/windows/ErrorLogView.h"
#include "ui/windows/RecordsModel.h"
#include "ui/windows/RowDelegate.h"
#include "ui/windows/SheetParts.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <QVBoxLayout>

#include <memory>

using namespace Qt::StringLiterals;
using Controller = TDoRollBackWindowController;

namespace {

constexpr int kCharacters = 110;
constexpr int kLines = 37;
constexpr int kStatusRoom = 32;
constexpr int kHeaderHeight = 28;

QTableView *makeTable(QAbstractItemModel *model, QWidget *parent)
{
    auto *table = new QTableView(parent);
    table->setModel(model);
    table->setItemDelegate(new RowDelegate(table));
    table->setFrameShape(QFrame::NoFrame);
    table->setShowGrid(false);
    table->setWordWrap(false);
    table->setAlternatingRowColors(true);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    table->setTabKeyNavigation(false);
    table->verticalHeader()->hide();
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->verticalHeader()->setDefaultSectionSize(RowDelegate::rowHeight(table->fontMetrics()));
    QHeaderView *header = table->horizontalHeader();
    header->setHighlightSections(false);
    header->setMinimumHeight(kHeaderHeight);
    header->setSectionResizeMode(QHeaderView::Stretch);
    header->setSectionResizeMode(RecordsModel::Status, QHeaderView::Fixed);
    header->resizeSection(RecordsModel::Status,
                          header->fontMetrics().horizontalAdvance(RecordsModel::tr("Status")) +
                              kStatusRoom);
    return table;
}

} // namespace

RollBackWindow::RollBackWindow(Controller &runner, QWidget *parent)
    : QDialog(parent)
    , m_runner(runner)
    , m_records(new RecordsModel(runner, this))
    , m_table(makeTable(m_records, this))
    , m_summary(SheetParts::muted(QString(), this))
    , m_status(SheetParts::muted(QString(), this))
    , m_bar(new QProgressBar(this))
    , m_onlyProblems(new QCheckBox(this))
    , m_reverse(new QCheckBox(tr("From the &last file to the first"), this))
    , m_reverseReason(SheetParts::muted(
          tr("Recommended: in this run, files took the names that others had just given up. Only "
             "in the reverse order do all of them get their old names back."),
          this))
    , m_cancel(new QPushButton(this))
    , m_rollBack(new QPushButton(this))
{
    setWindowModality(Qt::ApplicationModal);
    setWindowTitle(tr("Roll Back"));
    m_table->setAccessibleName(tr("Files of the run"));
    m_bar->setTextVisible(false);
    m_bar->setAccessibleName(tr("Progress"));
    m_reverse->setAccessibleDescription(m_reverseReason->text());
    m_rollBack->setDefault(true);
    m_cancel->setAutoDefault(false);
    m_onlyProblems->hide();
    layOut();
    connectAll();
    refreshSummary();
    refresh();
    m_table->setFocus();
    resize(SheetParts::sizeOf(this, kCharacters, kLines));
}

void RollBackWindow::layOut()
{
    auto *layout = SheetParts::column(this);
    layout->addWidget(SheetParts::title(tr("Give files their old names back"), this));
    layout->addWidget(m_summary);
    layout->addWidget(m_status);
    layout->addWidget(m_bar);
    layout->addSpacing(SheetParts::kGap);
    layout->addWidget(SheetParts::framed(m_table, this), 1);
    layout->addWidget(m_onlyProblems);
    layout->addWidget(m_reverse);
    layout->addWidget(m_reverseReason);
    layout->addSpacing(SheetParts::kGap);
    layout->addLayout(SheetParts::buttonRow({m_cancel, m_rollBack}));
}

void RollBackWindow::connectAll()
{
    connect(&m_runner, &Controller::changed, this, &RollBackWindow::refresh);
    connect(&m_runner, &Controller::progressChanged, this,
            [this] { m_bar->setValue(m_runner.progress()); });
    connect(&m_runner, &Controller::tableReloaded, this, &RollBackWindow::refreshSummary);
    connect(m_rollBack, &QPushButton::clicked, this, [this] { m_runner.rollBack(); });
    connect(m_cancel, &QPushButton::clicked, this, &RollBackWindow::reject);
    connect(m_reverse, &QCheckBox::toggled, this, [this](bool on) { m_runner.setReverse(on); });
    connect(m_onlyProblems, &QCheckBox::toggled, m_records, &RecordsModel::setOnlyProblems);
    connect(m_records, &RecordsModel::modelReset, m_table, [this] {
        m_table->selectionModel()->setCurrentIndex(m_records->index(0, RecordsModel::Current),
                                                   QItemSelectionModel::ClearAndSelect |
                                                       QItemSelectionModel::Rows);
    });
    connect(m_table, &QTableView::clicked, this, &RollBackWindow::showProblems);
    connect(m_table->verticalScrollBar(), &QScrollBar::valueChanged, this, [this] {
        if (m_problems != nullptr)
            m_problems->dismiss();
    });
    m_table->installEventFilter(this);
}

void RollBackWindow::refresh()
{
    const bool isComplete = m_runner.state() == Controller::State::Complete;
    const bool isAnalysed = m_runner.state() == Controller::State::Analysed;
    m_status->setText(m_runner.statusText());
    m_bar->setValue(m_runner.progress());
    m_status->setVisible(m_runner.isProgressShown());
    m_bar->setVisible(m_runner.isProgressShown());
    m_summary->setVisible(!m_runner.isProgressShown());
    m_rollBack->setText(u'&' + m_runner.rollBackButtonTitle());
    m_cancel->setText(isComplete ? tr("Close") : tr("Cancel"));
    m_cancel->setDefault(isComplete);
    if (m_rollBack->hasFocus() && !m_runner.rollBackButtonEnabled())
        m_cancel->setFocus(Qt::OtherFocusReason);
    m_rollBack->setEnabled(m_runner.rollBackButtonEnabled());
    m_reverse->setChecked(m_runner.isReverse());
    m_reverse->setEnabled(isAnalysed);
    for (QWidget *order :
         {static_cast<QWidget *>(m_reverse), static_cast<QWidget *>(m_reverseReason)})
        order->setVisible(m_runner.recommendsReverse() && !isComplete);
}

/// Comes once a pass, so that counting a million records is no matter.
void RollBackWindow::refreshSummary()
{
    if (m_problems != nullptr)
        m_problems->dismiss();
    const bool isAfter = m_runner.state() == Controller::State::Complete;
    const auto total = static_cast<qlonglong>(m_runner.theTRX().size());
    const int problems = m_records->problemCount();
    const QString format = isAfter ? tr("%1 of %2 files have their old names back.")
                                   : tr("%1 of %2 files can get their old names back.");
    QString text = format.arg(locale().toString(total - problems), locale().toString(total));
    if (problems > 0 && isAfter && m_runner.wasStopped())
        text += u' ' + tr("Rolling back this run again goes on with the others.");
    else if (problems > 0)
        text += u' ' + tr("To see why not, click a current name or press Space.");
    m_summary->setText(text);
    m_onlyProblems->setText(tr("Show only the &other files (%1)").arg(locale().toString(problems)));
    m_onlyProblems->setVisible(problems > 0 && problems < total);
    if (m_onlyProblems->isHidden())
        m_onlyProblems->setChecked(false);
}

void RollBackWindow::showProblems(const QModelIndex &index)
{
    const TErrorLog *const log =
        index.isValid() ? m_runner.clicked(m_records->recordOf(index.row()), index.column())
                        : nullptr;
    if (log == nullptr)
        return;
    const QString note = m_records->allIsWell(index.row());
    m_problems = Popover::open(std::make_unique<ErrorLogView>(*log, note).release(), // its own
                               m_table->viewport(), m_table->visualRect(index));
}

/// The keyboard shows the problems of the selected record; Return starts nothing from here.
bool RollBackWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_table && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space) {
            showProblems(m_table->currentIndex().siblingAtColumn(RecordsModel::Current));
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

/// The controller's owner takes the window away. A folder that does not answer keeps nobody here:
/// the second time leaves at once.
void RollBackWindow::reject()
{
    if (m_runner.state() == Controller::State::RollingBack && !m_runner.wasStopped())
        m_runner.stop();
    else
        m_runner.cancel();
}
