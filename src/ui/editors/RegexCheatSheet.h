// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

/// The most used pieces of patterns and replacements, each with what it means; a click on one asks
/// for it to be written where the cursor is.
class RegexCheatSheet : public QWidget
{
    Q_OBJECT

public:
    explicit RegexCheatSheet(QWidget *parent = nullptr);

Q_SIGNALS:
    /// The cursor goes back by that many characters behind it.
    void snippetChosen(const QString &snippet, int cursorBack, bool isForReplacement);
};
