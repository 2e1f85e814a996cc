// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TOptions.h"

#include <QMenu>

class TDocument;

/// The options of one batch, each with its check mark. Leaving unchanged names alone is remembered
/// for new batches.
class OptionsMenu : public QMenu
{
    Q_OBJECT

public:
    /// The document outlives the menu.
    OptionsMenu(TDocument &document, QWidget *parent);

    /// The options that a new batch starts with.
    static TOptions initialOptions();

private:
    QAction *addOption(const QString &text, void (*change)(TOptions &options, bool on));
    void refresh();

    TDocument &m_document;
    QAction *m_replacing;
    QAction *m_leadingPeriods;
    QAction *m_duplicates;
    QAction *m_keepUnchanged;
    QAction *m_useLog;
};
