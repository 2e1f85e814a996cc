// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "rules/TRegExRule.h"

#include <QScrollArea>

#include <vector>

class QLineEdit;
class QVBoxLayout;

/// The pairs of a regular-expression rule as a list of fields, a pattern and its replacement in
/// each row. It holds no pairs of its own: setPairs() shows some, pairs() makes new ones of what
/// stands in the fields.
class RegexPairsView : public QScrollArea
{
    Q_OBJECT

public:
    explicit RegexPairsView(QWidget *parent = nullptr);

    /// Keeps the rows there are, with cursor and focus. Signals nothing.
    void setPairs(const TRegExPairs &pairs);
    TRegExPairsPtr pairs() const;
    int count() const { return static_cast<int>(m_rows.size()); }
    /// The row where the cursor is or was last; -1 without rows.
    int currentRow() const;

    /// The controls of the rows in the order in which the keyboard is to go through them.
    QList<QWidget *> focusOrder() const;

    /// A new pair at the end, with its pattern to be overwritten.
    void addPair();
    void removeRow(int row);
    /// Exchanges the current row with the one that many below.
    void moveCurrentRow(int by);
    /// Writes it into the current row, at the cursor; adds a row when there is none.
    void insertSnippet(const QString &snippet, int cursorBack, bool isForReplacement);

    QSize sizeHint() const override;
    /// One row, as the others can be scrolled to.
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// There are other controls than before.
    void rowsChanged();
    /// The user changed the pairs in any way.
    void pairsEdited();
    void currentRowChanged();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Row
    {
        QWidget *body;
        QLineEdit *match;
        QLineEdit *replace;
        QWidget *remove;
    };

    Row makeRow();
    QLineEdit *makeField(const QString &name, QWidget *body);
    void setRowCount(std::size_t count);
    int rowWith(const QObject *widget) const;

    QVBoxLayout *m_column;
    std::vector<Row> m_rows;
    int m_currentRow = 0;
};
