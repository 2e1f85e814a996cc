// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QListView>

/// A list of which one row is picked, with the mouse or the keyboard. Shows a text in its middle
/// while it is empty.
class PickList : public QListView
{
    Q_OBJECT

public:
    explicit PickList(QWidget *parent = nullptr);

    void setModel(QAbstractItemModel *model) override;
    void setPlaceholder(const QString &text);

Q_SIGNALS:
    /// -1 when none is.
    void rowPicked(qsizetype row);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_placeholder;
};
