// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/ClosingButton.h"

#include <QDialog>
#include <QStyleOptionButton>

ClosingButton::ClosingButton(const QString &text, QDialog *window)
    : QPushButton(text, window)
{
    connect(this, &QPushButton::clicked, window, &QDialog::accept);
}

void ClosingButton::initStyleOption(QStyleOptionButton *option) const
{
    QPushButton::initStyleOption(option);
    option->features &=
        ~(QStyleOptionButton::DefaultButton | QStyleOptionButton::AutoDefaultButton);
}
