// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/controls/AccessibleLabel.h"

#include <QLabel>

void AccessibleLabel::add(QWidget &control)
{
    auto *label = new QLabel(control.accessibleName(), control.parentWidget());
    label->setTextFormat(Qt::PlainText);
    label->setBuddy(&control);
    label->hide();
}
