// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TErrorLog.h"

#include <QWidget>

/// A list of problems with their levels, as the content of a popover: of a test run, of one file,
/// of one record of a rollback. For an empty log it shows the note, or says that there is no
/// problem.
class ErrorLogView : public QWidget
{
    Q_OBJECT

public:
    explicit ErrorLogView(const TErrorLog &log, const QString &note = {},
                          QWidget *parent = nullptr);

private:
    class List;
};
