// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/editors/ExtensionMapModel.h"

#include <QTableView>

class QToolButton;

/// The extension table with the buttons that add, remove and move its pairs. Edited in place;
/// Insert and Delete add and remove, Alt with the arrow keys moves.
class ExtensionMapTable : public QWidget
{
    Q_OBJECT

public:
    explicit ExtensionMapTable(QWidget *parent = nullptr);

    const std::vector<TExtensionMap> &pairs() const { return m_model->pairs(); }
    /// Signals nothing, and disturbs nothing when the pairs are these.
    void setPairs(const std::vector<TExtensionMap> &pairs);
    QTableView *table() const { return m_table; }

Q_SIGNALS:
    void edited();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void addButtons();
    QToolButton *button(const QString &text, const QString &name, void (ExtensionMapTable::*act)());
    void addPair();
    void removePair();
    void moveUp() { movePair(true); }
    void moveDown() { movePair(false); }
    void movePair(bool up);
    void updateButtons();

    ExtensionMapModel *m_model;
    QTableView *m_table;
    QToolButton *m_remove = nullptr;
    QToolButton *m_up = nullptr;
    QToolButton *m_down = nullptr;
};
