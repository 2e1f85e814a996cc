// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/windows/RowDelegate.h"

/// A saved run in two lines: when it was and what it was about, for people, and the name of its
/// log.
class LogDelegate : public RowDelegate
{
    Q_OBJECT

public:
    /// Item data role of what the run was about, a text; empty when it is not known.
    static constexpr int kSummaryRole = kInkRole + 1;

    using RowDelegate::RowDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    /// The moment that a log's name tells, in the user's words; empty when it tells none.
    static QString readableDate(const QString &logName);
};
