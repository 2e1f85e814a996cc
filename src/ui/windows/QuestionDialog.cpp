// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/QuestionDialog.h"

#include "ui/controls/Icons.h"
#include "ui/controls/Theme.h"
#include "ui/windows/SheetParts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int kIconSize = 48;
constexpr qsizetype kMostTitle = 100;
constexpr qsizetype kMostText = 500;
constexpr qsizetype kMostNote = 240;
/// Milliseconds between two presses of a key that is held down.
constexpr qint64 kLongestRepeat = 1000;

/// Button texts are words, not mnemonics.
QString buttonText(QString text)
{
    return text.replace(u'&', "&&"_L1);
}

/// So that the buttons stay on the smallest screen.
QString shortened(const QString &text, qsizetype most)
{
    return text.size() <= most ? text : text.first(most / 2) + u'\u2026' + text.last(most / 2);
}

QLabel *makeIcon(TDialogHost::Form form, QWidget *parent)
{
    const ThemeColors colors = ThemeColors::of(parent->palette());
    const bool isStop = form == TDialogHost::Form::StopSheet;
    auto *icon = new QLabel(parent);
    icon->setPixmap(Icons::pixmap(isStop ? "stop"_L1 : "tavrin"_L1, kIconSize,
                                  isStop ? colors.critical : colors.accent,
                                  parent->devicePixelRatioF()));
    return icon;
}

} // namespace

QuestionDialog::QuestionDialog(const TDialogHost::Question &question,
                               TDialogHost::Answered answered, QWidget *window)
    : QDialog(window)
    , m_answered(std::move(answered))
{
    setAccessibleName(question.title);
    setAccessibleDescription(question.text);
    auto *layout = SheetParts::column(this);
    layout->setSpacing(SheetParts::kMargin);
    auto *top = new QHBoxLayout;
    layout->addLayout(top);
    top->setSpacing(SheetParts::kWideGap);
    top->addWidget(makeIcon(question.form, this), 0, Qt::AlignTop);
    top->addLayout(makeTexts(question), 1);
    layout->addLayout(makeButtons(buttonsOf(question)));
    layout->setSizeConstraint(QLayout::SetFixedSize);
    if (m_escapeButton == 0 && question.buttons.size() > 1)
        addKeyToGoAhead();
}

/// Return alone cancels what is better thought over. The key that led here may still be down, and
/// not every desktop tells a key that repeats itself from one that is pressed again.
void QuestionDialog::addKeyToGoAhead()
{
    m_quiet.start();
    for (const auto key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto *shortcut = new QShortcut(Qt::CTRL | key, this);
        shortcut->setAutoRepeat(false);
        connect(shortcut, &QShortcut::activated, this, [this] {
            if (m_quiet.restart() >= kLongestRepeat)
                answer(1);
        });
    }
}

QStringList QuestionDialog::buttonsOf(const TDialogHost::Question &question) const
{
    return question.buttons.isEmpty() ? QStringList{tr("OK")} : question.buttons;
}

QLayout *QuestionDialog::makeTexts(const TDialogHost::Question &question)
{
    auto texts = std::make_unique<QVBoxLayout>();
    texts->setSpacing(SheetParts::kGap);
    texts->addWidget(SheetParts::title(shortened(question.title, kMostTitle), this));
    texts->addWidget(SheetParts::text(shortened(question.text, kMostText), this));
    if (!question.note.isEmpty()) {
        texts->addSpacing(SheetParts::kGap);
        texts->addWidget(SheetParts::muted(shortened(question.note, kMostNote), this));
    }
    texts->addStretch();
    return texts.release(); // the layout's that it is added to
}

QLayout *QuestionDialog::makeButtons(const QStringList &texts)
{
    QHBoxLayout *row = SheetParts::buttonRow({});
    for (qsizetype i = 0; i < texts.size(); ++i) {
        auto *button = new QPushButton(buttonText(texts[i]), this);
        connect(button, &QPushButton::clicked, this, [this, i] { answer(i); });
        button->setDefault(i == 0);
        if (i == 1 && m_escapeButton == 0)
            button->setToolTip(
                QKeySequence(Qt::CTRL | Qt::Key_Return).toString(QKeySequence::NativeText));
        row->addWidget(button);
        if (i == 0)
            button->setFocus();
        if (texts[i] == tr("Cancel"))
            m_escapeButton = i;
    }
    return row;
}

void QuestionDialog::reject()
{
    answer(m_escapeButton);
}

void QuestionDialog::answer(qsizetype button)
{
    const TDialogHost::Answered answered = std::exchange(m_answered, {});
    hide();
    deleteLater();
    if (answered) // last: the window, and with it this dialog, may go away meanwhile
        answered(button);
}
