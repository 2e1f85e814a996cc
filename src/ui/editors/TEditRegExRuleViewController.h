// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "rules/TRegExRule.h"
#include "ui/editors/RegexCheatSheet.h"
#include "ui/editors/RegexPairsView.h"
#include "ui/editors/TRuleViewController.h"

#include <QPushButton>
#include <QToolButton>

/// The editor of a regular-expression rule: what it reads, its pairs, what is wrong with them while
/// they are typed, and what they make of a few files. Help unfolds below the pairs.
class TEditRegExRuleViewController : public TRuleViewController
{
    Q_OBJECT

public:
    TEditRegExRuleViewController(const TRulePtr &rule, const EditorContext &context);

protected:
    void refresh() override;
    QList<SamplePreview::Line> previewLines() const override;

private:
    TRegExRule &regex() const { return ruleAs<TRegExRule>(); }
    void addSourceRows();
    QWidget *makeButtons();
    QToolButton *makeMoveButton(const QString &name, int by, QWidget *parent);
    void pairsEdited();
    void orderFocus();
    void showHelp(bool isShown);
    void compile();
    void refreshSources();
    QString problem() const;
    SamplePreview::Line lineFor(const QString &before, RegexReplacer::Budget &budget) const;

    QComboBox *m_source = nullptr;
    QCheckBox *m_replacesAll = nullptr;
    RegexPairsView *m_pairs;
    QPushButton *m_add = nullptr;
    QToolButton *m_up = nullptr;
    QToolButton *m_down = nullptr;
    EditorLabel *m_problem;
    QPushButton *m_helpButton = nullptr;
    RegexCheatSheet *m_help;
    QStringList m_fileNames;               ///< of the files that are examples
    QStringList m_namesBefore;             ///< of the same, so far
    std::vector<RegexReplacer> m_compiled; ///< of the pairs
};
