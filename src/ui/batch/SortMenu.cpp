// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/batch/SortMenu.h"

#include "document/TDocument.h"

#include <array>

namespace {

struct Item
{
    const char *text;
    bool startsGroup = false;
};
constexpr std::array kItems{
    Item{QT_TRANSLATE_NOOP("SortMenu", "Name, Ascending, Ignoring Case")},
    Item{QT_TRANSLATE_NOOP("SortMenu", "Name, Ascending, Case Sensitive")},
    Item{QT_TRANSLATE_NOOP("SortMenu", "Name, Descending, Ignoring Case")},
    Item{QT_TRANSLATE_NOOP("SortMenu", "Name, Descending, Case Sensitive")},
    Item{QT_TRANSLATE_NOOP("SortMenu", "New Name, Ascending"), true},
    Item{QT_TRANSLATE_NOOP("SortMenu", "New Name, Descending")},
    Item{QT_TRANSLATE_NOOP("SortMenu", "Creation Date, Ascending"), true},
    Item{QT_TRANSLATE_NOOP("SortMenu", "Creation Date, Descending")},
    Item{QT_TRANSLATE_NOOP("SortMenu", "Modification Date, Ascending")},
    Item{QT_TRANSLATE_NOOP("SortMenu", "Modification Date, Descending")},
    Item{QT_TRANSLATE_NOOP("SortMenu", "Size, Ascending"), true},
    Item{QT_TRANSLATE_NOOP("SortMenu", "Size, Descending")},
    Item{QT_TRANSLATE_NOOP("SortMenu", "Problems, Ascending"), true},
    Item{QT_TRANSLATE_NOOP("SortMenu", "Problems, Descending")},
};

} // namespace

SortMenu::SortMenu(TDocument &document, QWidget *parent)
    : QMenu(tr("&Sort"), parent)
{
    int number = 0;
    for (const Item &item : kItems) {
        if (item.startsGroup)
            addSeparator();
        ++number;
        addAction(tr(item.text), &document, [&document, number] { document.sortNow(number); });
    }
}
