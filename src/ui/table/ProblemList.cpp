// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/table/ProblemList.h"

#include "commonprocs/ByteNames.h"
#include "ui/controls/Icons.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>

#include <algorithm>

namespace {

constexpr int kSlack = 16;
constexpr int kTextLetters = 52;
/// A list that is longer than this would not fit into the window.
constexpr qsizetype kMostShown = 12;

QLabel *wrapped(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setText(text);
    const QFontMetrics metrics = label->fontMetrics();
    const int most = metrics.averageCharWidth() * kTextLetters;
    label->setFixedWidth(std::min(most, metrics.horizontalAdvance(text) + kSlack));
    return label;
}

} // namespace

ProblemList::ProblemList(const QString &fileName, const TErrorLog &log, QWidget *parent)
    : QWidget(parent)
{
    setAccessibleName(tr("Problems"));
    setFocusPolicy(Qt::StrongFocus);
    auto *layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setHorizontalSpacing(8);
    layout->setVerticalSpacing(8);
    auto *title = wrapped(fontMetrics().elidedText(ByteNames::forDisplay(fileName), Qt::ElideMiddle,
                                                   fontMetrics().averageCharWidth() * kTextLetters),
                          this);
    QFont bold = title->font();
    bold.setWeight(QFont::DemiBold);
    title->setFont(bold);
    title->setMinimumWidth(0);
    title->setMaximumWidth(QWIDGETSIZE_MAX);
    title->setWordWrap(false);
    layout->addWidget(title, 0, 0, 1, 2);
    const int side = Icons::extent(fontMetrics());
    int row = 1;
    for (const TErrorTypes &problem : log) {
        if (row > kMostShown)
            break;
        auto *icon = new QLabel(this);
        icon->setPixmap(
            Icons::forLevel(problem.errClass).pixmap(QSize(side, side), devicePixelRatioF()));
        layout->addWidget(icon, row, 0, Qt::AlignTop);
        layout->addWidget(wrapped(problem.errDesc.toString(), this), row++, 1);
    }
    if (log.count() > kMostShown)
        layout->addWidget(
            wrapped(tr("and %Ln more", nullptr, static_cast<int>(log.count() - kMostShown)), this),
            row, 1);
}

void ProblemList::keyPressEvent(QKeyEvent *event)
{
    const bool isUp = event->key() == Qt::Key_Up;
    if (isUp || event->key() == Qt::Key_Down)
        Q_EMIT stepRequested(isUp);
    else
        QWidget::keyPressEvent(event);
}
