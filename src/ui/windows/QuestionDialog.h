// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDialogHost.h"

#include <QDialog>

/// One question or message. Escape and closing give the button "Cancel" if there is one, else -1.
/// Deletes itself when answered; destroyed earlier, it gives no answer.
class QuestionDialog : public QDialog
{
    Q_OBJECT

public:
    QuestionDialog(const TDialogHost::Question &question, TDialogHost::Answered answered,
                   QWidget *window);

    void reject() override;

private:
    QStringList buttonsOf(const TDialogHost::Question &question) const;
    QLayout *makeTexts(const TDialogHost::Question &question);
    QLayout *makeButtons(const QStringList &texts);
    void answer(qsizetype button);

    TDialogHost::Answered m_answered; ///< empty once called
    qsizetype m_escapeButton = -1;
};
