// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "rules/TSeparatorRule.h"
#include "ui/editors/TRuleViewController.h"

#include <QButtonGroup>

/// The editor of a separator: the ten characters as buttons, one of them down. Arrow keys move on
/// and choose.
class TEditSeparatorRuleViewController : public TRuleViewController
{
    Q_OBJECT

public:
    TEditSeparatorRuleViewController(const TRulePtr &rule, const EditorContext &context);

protected:
    void refresh() override;
    QList<SamplePreview::Line> previewLines() const override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *makeButtons();
    void choose(int index);

    QButtonGroup *m_buttons;
};
