// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractItemView>

#include <functional>

/// A list or table inside an editor, in a rounded field's frame that shows who has the keyboard:
/// rows of one height, texts in the theme's weights, a calm selection, which marked cells look
/// like.
class ListFrame : public QWidget
{
    Q_OBJECT

public:
    enum class Weight { Plain, Muted, Strong, Marked };
    using WeightOf = std::function<Weight(const QModelIndex &)>;

    /// Takes the view over and asks for a height of so many rows.
    ListFrame(QAbstractItemView *view, int shownRows, const WeightOf &weightOf, QWidget *parent);

    static int rowHeight(const QWidget &widget);
    QSize sizeHint() const override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QAbstractItemView *m_view;
    int m_shownRows;
};
