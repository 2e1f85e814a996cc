// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/UpdateProgress.h"

#include "ui/windows/SheetParts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

namespace {

constexpr int kCharacters = 40;

} // namespace

UpdateProgress::UpdateProgress(QWidget *window)
    : QDialog(window)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Updates"));
    auto *bar = new QProgressBar(this);
    bar->setRange(0, 0); // nobody knows how long
    bar->setTextVisible(false);
    bar->setMinimumWidth(SheetParts::widthOf(this, kCharacters));
    bar->setAccessibleName(tr("Looking for a new version"));
    auto *cancel = new QPushButton(tr("Cancel"), this);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    auto *layout = SheetParts::column(this);
    layout->addWidget(SheetParts::title(tr("Looking for a new version..."), this));
    layout->addWidget(bar);
    layout->addSpacing(SheetParts::kGap);
    layout->addLayout(SheetParts::buttonRow({cancel}));
    layout->setSizeConstraint(QLayout::SetFixedSize);
}
