// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QBoxLayout>

/// A row of parts, each a layout or widget, that stand below each other where there is no room for
/// them beside each other.
class FoldingRow : public QBoxLayout
{
    Q_OBJECT

public:
    /// Between the parts, when they stand beside and below each other.
    FoldingRow(int beside, int below, QWidget *parent);

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    int minimumHeightForWidth(int width) const override { return heightForWidth(width); }
    QSize minimumSize() const override;
    void setGeometry(const QRect &rect) override;

private:
    bool folds(int width) const;

    const int m_beside;
    const int m_below;
};
