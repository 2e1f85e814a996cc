// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "metadata/TCSVRule.h"
#include "ui/editors/CSVLoader.h"
#include "ui/editors/TRuleViewController.h"

#include <QPointer>
#include <QTimer>

class CSVProgress;
class CSVTableModel;
class CSVTableView;
class DropHint;
class QFileDialog;
class QPushButton;

/// Editor of the CSV rule: loads a file, from a panel or dropped, and shows its table, in which the
/// column is chosen.
class TEditCSVRuleViewController : public TRuleViewController
{
    Q_OBJECT

public:
    TEditCSVRuleViewController(const TRulePtr &rule, const EditorContext &context);

    /// Reads the file in the background; its table becomes the rule's.
    void loadFile(const QString &path);

protected:
    void refresh() override;
    QList<SamplePreview::Line> previewLines() const override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    TCSVRule &rule() const { return ruleAs<TCSVRule>(); }
    void addFileRows();
    void addTable();
    void addSettings();
    void chooseFile();
    void fileLoaded(const CSVLoader::Result &result);
    void tellFailure(const QString &path, const QString &problem);
    void showLoading(const QString &path);
    void showProgress();
    void showSource();
    QString tableSummary() const;
    QString columnRemark() const;

    CSVLoader *m_loader;
    CSVTableModel *m_model;
    CSVTableView *m_table = nullptr;
    DropHint *m_hint = nullptr;
    QPushButton *m_choose = nullptr;
    EditorLabel *m_file = nullptr;
    EditorLabel *m_problem = nullptr;
    QLabel *m_columnRemark = nullptr;
    EditorForm::Row m_tableRow;
    EditorForm::Row m_columnRow;
    QPointer<QFileDialog> m_panel;
    QPointer<CSVProgress> m_progress;
    QTimer m_patience; ///< quick readings show no progress
    QString m_loading; ///< the file that is being read; empty when there is none
};
