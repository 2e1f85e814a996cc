// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/RegexCheatSheet.h"

#include "ui/editors/EditorLabel.h"

#include <QGridLayout>
#include <QPushButton>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr int kWidest = 640;
constexpr int kFewestColumns = 2;
constexpr int kMostColumns = 3;
constexpr int kGap = 8;
constexpr int kButtonFrame = 20;
constexpr int kButtonLeading = 10;
constexpr int kRowGap = 2;
constexpr QChar kLeftToRight(0x200E); ///< patterns read that way in every language

struct Snippet
{
    QLatin1StringView text;
    const char *meaning;
    int cursorBack = 0;
    bool isForReplacement = false;
};

constexpr std::array kSnippets{
    Snippet{"."_L1, QT_TRANSLATE_NOOP("RegexCheatSheet", "any character")},
    Snippet{"\\d"_L1, QT_TRANSLATE_NOOP("RegexCheatSheet", "a digit")},
    Snippet{"\\w"_L1, QT_TRANSLATE_NOOP("RegexCheatSheet", "a letter, digit or _")},
    Snippet{"\\s"_L1, QT_TRANSLATE_NOOP("RegexCheatSheet", "a blank")},
    Snippet{"[]"_L1, QT_TRANSLATE_NOOP("RegexCheatSheet", "one of these"), 1},
    Snippet{"[^]"_L1, QT_TRANSLATE_NOOP("RegexCheatSheet", "none of these"), 1},
    Snippet{"\\."_L1, QT_TRANSLATE_NOOP("RegexCheatSheet", "a period")},
    Snippet{"|"_L1, QT_TRANSLATE_NOOP("RegexCheatSheet", "this or that")},
    Snippet{"^"_L1, QT_TRANSLATE_NOOP("RegexCheatSheet", "at the beginning")},
    Snippet{"$"_L1, QT_TRANSLATE_NOOP("RegexCheatSheet", "at the end")},
    Snippet{"?"_L1, QT_TRANSLATE_NOOP("RegexCheatSheet", "it may be missing")},
    Snippet{"+"_L1, QT_TRANSLATE_NOOP("RegexCheatSheet", "once or more often")},
    Snippet{"*"_L1, QT_TRANSLATE_NOOP("RegexCheatSheet", "any number of times")},
    Snippet{"{2,4}"_L1, QT_TRANSLATE_NOOP("RegexCheatSheet", "two to four times")},
    Snippet{"()"_L1, QT_TRANSLATE_NOOP("RegexCheatSheet", "a group to reuse"), 1},
    Snippet{"(?i)"_L1, QT_TRANSLATE_NOOP("RegexCheatSheet", "capitals or not")},
    Snippet{"$0"_L1, QT_TRANSLATE_NOOP("RegexCheatSheet", "replacement: all found"), 0, true},
    Snippet{"$1"_L1, QT_TRANSLATE_NOOP("RegexCheatSheet", "replacement: group 1"), 0, true},
};

} // namespace

RegexCheatSheet::RegexCheatSheet(QWidget *parent)
    : QWidget(parent)
{
    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(kGap);
    grid->setVerticalSpacing(kRowGap);
    const QFont code = EditorLabel::codeFont(font());
    const int buttonWidth = QFontMetrics(code).horizontalAdvance(u"{2,4}"_s) + kButtonFrame;
    int widest = 0;
    for (const Snippet &snippet : kSnippets)
        widest = std::max(widest, fontMetrics().horizontalAdvance(tr(snippet.meaning)));
    const int columns =
        std::clamp(kWidest / (buttonWidth + widest + 2 * kGap), kFewestColumns, kMostColumns);
    const int rows = (static_cast<int>(kSnippets.size()) + columns - 1) / columns;
    int index = 0;
    for (const Snippet &snippet : kSnippets) {
        const int row = index % rows;
        const int column = 2 * (index++ / rows);
        const QString text = snippet.text;
        const QString meaning = tr(snippet.meaning);
        auto *button = new QPushButton(kLeftToRight + text, this);
        button->setFont(code);
        button->setAutoDefault(false);
        button->setFixedWidth(buttonWidth);
        button->setFixedHeight(button->fontMetrics().height() + kButtonLeading);
        button->setFocusPolicy(Qt::TabFocus); // a click leaves the cursor in its field
        button->setAccessibleName(meaning);
        button->setToolTip(tr("Write it at the cursor"));
        connect(button, &QPushButton::clicked, this, [this, snippet, text] {
            Q_EMIT snippetChosen(text, snippet.cursorBack, snippet.isForReplacement);
        });
        grid->addWidget(button, row, column);
        grid->addWidget(new EditorLabel(meaning, EditorLabel::Tone::Plain, this), row, column + 1);
    }
    for (int column = 0; column < columns; ++column)
        grid->setColumnStretch(2 * column + 1, 1);
}
