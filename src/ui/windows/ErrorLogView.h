// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TErrorLog.h"

#include <QWidget>

/// A list of problems with their levels, as the content of a popover: of a test run, of one record
/// of a rollback. For an empty log it shows the note, or says that there is no problem. As wide as
/// its texts, where the window is.
class ErrorLogView : public QWidget
{
    Q_OBJECT

public:
    explicit ErrorLogView(const TErrorLog &log, const QString &note = {},
                          QWidget *parent = nullptr);

    /// Says that a problem leads to its file, and offers to show only the files with problems. For
    /// a log that is not empty.
    void offerFiles();

Q_SIGNALS:
    /// A click on a problem, or Return; its place in the log.
    void problemChosen(qsizetype entry);
    void problemFilesWanted();

private:
    class List;
};
