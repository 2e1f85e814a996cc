// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMenu>

class TDocument;

/// The fourteen ways to sort a batch, as TDocument::sortNow counts them. Keeps no state: nothing in
/// it is ever checked.
class SortMenu : public QMenu
{
    Q_OBJECT

public:
    /// The document outlives the menu.
    SortMenu(TDocument &document, QWidget *parent);
};
