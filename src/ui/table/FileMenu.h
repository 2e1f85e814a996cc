// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMenu>

/// The context menu of the file table. Deletes itself after use.
class FileMenu : public QMenu
{
    Q_OBJECT

public:
    /// hasProblems is of the file under the cursor.
    FileMenu(bool hasProblems, QWidget *parent);

Q_SIGNALS:
    void removeChosen();
    void revealChosen();
    void metadataChosen();
    void problemsChosen();
    void copyNameChosen();
    void copyNewNameChosen();
};
