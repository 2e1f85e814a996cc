// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDialogHost.h"

#include <QDialog>
#include <QElapsedTimer>

/// One question or message. Escape and closing give the button "Cancel" if there is one, else -1.
/// Where that comes first, so that Return presses it, Ctrl+Return gives the second one, but not
/// while it may be held down. Deletes itself when answered; destroyed earlier, it gives no answer.
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
    void addKeyToGoAhead();
    void answer(qsizetype button);

    TDialogHost::Answered m_answered; ///< empty once called
    qsizetype m_escapeButton = -1;
    QElapsedTimer m_quiet; ///< since the question came, or since Ctrl+Return
};
