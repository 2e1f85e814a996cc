// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/inspector/TagModel.h"

#include <QHash>
#include <QSortFilterProxyModel>
#include <QTreeView>

/// The tags of one file by category. Which categories are open stays as the user left it when
/// another file is shown. Main thread only.
class TagTree : public QTreeView
{
    Q_OBJECT

public:
    explicit TagTree(QWidget *parent = nullptr);

    void setGroups(std::vector<TagGroup> groups);
    /// Only categories, names and values with the text are shown.
    void setFilter(const QString &text);
    /// What stands there while there are no tags.
    void setEmptyText(const QString &text);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// Enter or a double click on a tag that a rule can put into a name.
    void addRequested(const TRulePtr &rule);

protected:
    void changeEvent(QEvent *event) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void startDrag(Qt::DropActions actions) override;

private:
    const TagEntry *entryAt(const QModelIndex &index) const;
    void add(const QModelIndex &index);
    void copy(const QModelIndex &index) const;
    void openGroups();
    void divide();
    void remember(const QModelIndex &group, bool isOpen);
    QString groupTitle(const QModelIndex &group) const;
    void restoreCurrent();
    QPixmap picture(const TRuleModel &rule) const;

    TagModel m_model;
    QSortFilterProxyModel m_shown;
    QString m_emptyText;
    QHash<QString, bool> m_isOpen; ///< by title; only what the user changed
    QString m_currentGroup;        ///< of the tag that was current last
    QString m_currentTag;
    bool m_isOpening = false; ///< not the user, but this object opens and closes
};
