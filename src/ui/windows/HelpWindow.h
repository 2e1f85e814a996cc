// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <QTextCursor>

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
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void fill();
    void polish();
    void fitPictures();
    void keep(const QTextCursor &place, int top);
    void fitToPage();
    void listHeadings();
    QTreeWidgetItem *heading(const QString &text) const;
    void scrollTo(const QTreeWidgetItem *heading);
    void followLink(const QUrl &link);

    QTreeWidget *m_headings;
    QTextBrowser *m_text;
    int m_pictureWidth = 0; ///< that there is room for
    QTextCursor m_kept;     ///< stays where it is when the text gets new lines; else null
    int m_keptTop = 0;
};
