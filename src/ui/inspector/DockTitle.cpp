// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/inspector/DockTitle.h"

#include "ui/controls/Icons.h"

#include <QDockWidget>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace {

constexpr int kMargin = 12;
constexpr int kGap = 8;

} // namespace

DockTitle::DockTitle(QDockWidget &dock)
    : QWidget(&dock)
{
    auto *const title = new QLabel(dock.windowTitle(), this);
    QFont bold = font();
    bold.setWeight(QFont::DemiBold);
    title->setFont(bold);
    auto *const close = new QToolButton(this);
    close->setIcon(Icons::icon("close"_L1));
    close->setAutoRaise(true);
    close->setToolTip(tr("Close"));
    close->setAccessibleName(tr("Close %1").arg(dock.windowTitle()));
    auto *const layout = new QHBoxLayout(this);
    layout->setContentsMargins(kMargin, kGap, kMargin, kGap);
    layout->addWidget(title, 1);
    layout->addWidget(close);
    connect(close, &QToolButton::clicked, &dock, &QWidget::close);
}
