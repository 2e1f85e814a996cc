// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

class QTextBrowser;
class QTreeWidget;
class QTreeWidgetItem;

/// The manual, which comes with the program: its headings beside its text. Deletes itself when
/// closed.
class HelpWindow : public QDialog
{
    Q_OBJECT

public:
    enum class Topic { Start, RegularExpressions, Keys };

    explicit HelpWindow(QWidget *parent = nullptr);

    void turnTo(Topic topic);

protected:
    void changeEvent(QEvent *event) override;

private:
    void fill();
    void polish();
    void listHeadings();
    QTreeWidgetItem *heading(const QString &text) const;
    void scrollTo(const QTreeWidgetItem *heading);
    void followLink(const QUrl &link);

    QTreeWidget *m_headings;
    QTextBrowser *m_text;
};
