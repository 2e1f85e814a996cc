// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/SheetParts.h"

#include "commonprocs/ByteNames.h"
#include "ui/controls/Card.h"
#include "ui/windows/MutedLabel.h"

#include <QAbstractItemView>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>

#include <memory>

namespace {

constexpr double kTitleScale = 1.18;
constexpr int kTextCharacters = 58;
constexpr qsizetype kLongWord = 30;
constexpr QSize kAroundWindow{40, 40}; ///< panels and the window's frame
constexpr QChar kBreakHere{0x200B};

QLabel *prepared(QLabel *label)
{
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setMinimumWidth(SheetParts::widthOf(label, kTextCharacters));
    return label;
}

} // namespace

namespace SheetParts {

QVBoxLayout *column(QWidget *window)
{
    auto *layout = new QVBoxLayout(window);
    layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    layout->setSpacing(kGap);
    return layout;
}

QLabel *title(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(breakable(text), parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    QFont font = label->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * kTitleScale);
    label->setFont(font);
    return label;
}

QLabel *text(const QString &text, QWidget *parent)
{
    return prepared(new QLabel(breakable(text), parent));
}

QLabel *muted(const QString &text, QWidget *parent)
{
    return prepared(new MutedLabel(breakable(text), parent));
}

QString breakable(const QString &text)
{
    QString result;
    result.reserve(text.size() + text.size() / kLongWord);
    qsizetype word = 0;
    for (const QChar unit : ByteNames::withoutLoneSurrogates(text)) {
        if (word >= kLongWord && !unit.isLowSurrogate() && !unit.isMark() && !unit.isSpace()) {
            result += kBreakHere;
            word = 0;
        }
        result += unit;
        word = unit.isSpace() ? 0 : word + 1;
        if (unit == u'/')
            result += kBreakHere;
    }
    return result;
}

QWidget *framed(QWidget *view, QWidget *parent)
{
    auto *card = new Card(parent);
    auto *layout = new QVBoxLayout(card);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(view);
    card->showFocusOf(view);
    return card;
}

bool takesFirstStep(const QAbstractItemView &view, const QKeyEvent &event)
{
    const bool isStep = event.key() == Qt::Key_Down || event.key() == Qt::Key_Up;
    if (!isStep || !view.currentIndex().isValid() || view.selectionModel()->hasSelection())
        return false;
    view.selectionModel()->select(view.currentIndex(), QItemSelectionModel::ClearAndSelect);
    return true;
}

QHBoxLayout *buttonRow(std::initializer_list<QPushButton *> buttons)
{
    auto row = std::make_unique<QHBoxLayout>();
    row->setSpacing(kGap);
    row->addStretch();
    for (QPushButton *button : buttons)
        row->addWidget(button);
    return row.release(); // the layout's that it is added to
}

int widthOf(const QWidget *widget, int characters)
{
    return widget->fontMetrics().averageCharWidth() * characters;
}

QSize sizeOf(const QWidget *widget, int characters, int lines)
{
    const QSize wanted(widthOf(widget, characters), widget->fontMetrics().height() * lines);
    return wanted.boundedTo(widget->screen()->availableSize() - kAroundWindow);
}

} // namespace SheetParts
