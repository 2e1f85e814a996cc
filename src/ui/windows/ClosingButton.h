// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPushButton>

class QDialog;

/// Ends a window that has nothing to be confirmed. Return presses it where nothing else has a use
/// for Return, but it is plain: the accent is for what does something.
class ClosingButton : public QPushButton
{
    Q_OBJECT

public:
    ClosingButton(const QString &text, QDialog *window);

protected:
    void initStyleOption(QStyleOptionButton *option) const override;
};
