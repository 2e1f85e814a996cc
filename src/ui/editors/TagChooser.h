// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/editors/TagListModel.h"

#include <QSortFilterProxyModel>
#include <QTreeView>

class EditorLabel;
class QCheckBox;
class QLineEdit;

/// The list of tags on offer with the values of one file beside them, a field that filters by both,
/// and a switch that leaves only the tags which the file has. Moving in the list chooses; where
/// nothing is left of it, it says so.
class TagChooser : public QWidget
{
    Q_OBJECT

public:
    explicit TagChooser(QWidget *parent = nullptr);
    ~TagChooser() override;

    /// Without tags, the list holds the placeholder as its one disabled row.
    void setTags(const QStringList &offered, const QString &placeholder);
    /// Shows which tag is chosen; signals nothing.
    void setChosenTag(const QString &tag);
    /// remark says whose values they are, or why there are none.
    void setValues(const TagListModel::ValueOf &valueOf, const QString &remark);

    QTreeView *list() const { return m_list; }
    QLineEdit *filter() const { return m_filter; }
    QCheckBox *onlyPresent() const { return m_onlyPresent; }

Q_SIGNALS:
    void tagChosen(const QString &tag);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    class Proxy;

    void addHead();
    void addList();
    void refilter();
    void sayWhatIsMissing();
    QString missing() const;
    void showChosen(QAbstractItemView::ScrollHint hint = QAbstractItemView::EnsureVisible);

    TagListModel *m_model;
    Proxy *m_proxy;
    QString m_chosen;
    QLineEdit *m_filter;
    QCheckBox *m_onlyPresent;
    QTreeView *m_list;
    EditorLabel *m_hint; ///< in the place of a list without rows
    EditorLabel *m_remark;
    bool m_isShowing = false; ///< the current row follows the tag, not the other way round
};
