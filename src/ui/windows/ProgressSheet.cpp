// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/ProgressSheet.h"

#include "ui/windows/SheetParts.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int kBarSteps = 1000;
constexpr double kFull = 100;
constexpr int kCharacters = 56;

} // namespace

ProgressSheet::ProgressSheet(std::shared_ptr<TProgressSheetController> controller, QWidget *window)
    : QDialog(window)
    , m_controller(std::move(controller))
    , m_bar(new QProgressBar(this))
    , m_text(SheetParts::muted(QString(), this))
{
    setWindowModality(Qt::WindowModal);
    setAccessibleName(tr("Renaming"));
    m_bar->setRange(0, kBarSteps);
    m_bar->setTextVisible(false);
    m_bar->setAccessibleName(tr("Progress of the rename"));
    m_bar->setMinimumWidth(SheetParts::widthOf(this, kCharacters));
    auto *cancel = new QPushButton(tr("Cancel"), this);
    cancel->setAutoDefault(false); // no run ends by a stray Return
    cancel->setToolTip(tr("Stops after the file in hand. What was renamed can be rolled back."));
    connect(cancel, &QPushButton::clicked, this, &ProgressSheet::reject);
    connect(this, &QDialog::rejected, cancel, [cancel] { cancel->setEnabled(false); });

    auto *layout = SheetParts::column(this);
    layout->addWidget(SheetParts::title(tr("Renaming..."), this));
    layout->addWidget(m_bar);
    layout->addWidget(m_text);
    layout->addSpacing(SheetParts::kGap);
    layout->addLayout(SheetParts::buttonRow({cancel}));
    layout->setSizeConstraint(QLayout::SetFixedSize);
    refresh();
}

void ProgressSheet::refresh()
{
    m_bar->setValue(static_cast<int>(m_controller->progress() / kFull * kBarSteps));
    m_text->setText(m_controller->statusText());
}

/// The sheet stays until the file in hand is finished; its window takes it away.
void ProgressSheet::reject()
{
    m_controller->iWantToAbort();
    Q_EMIT rejected();
}
