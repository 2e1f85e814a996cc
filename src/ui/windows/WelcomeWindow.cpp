// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/WelcomeWindow.h"

#include "ui/windows/SheetParts.h"
#include "ui/windows/UiSettings.h"
#include "ui/windows/WelcomePicture.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include <array>
#include <memory>

namespace {

struct Step
{
    WelcomePicture::Step picture;
    const char *title;
    const char *text;
};
constexpr std::array kSteps{
    Step{WelcomePicture::Drop, QT_TRANSLATE_NOOP("WelcomeWindow", "1. Drop"),
         QT_TRANSLATE_NOOP("WelcomeWindow", "Drop files or folders on the list.")},
    Step{WelcomePicture::Tiles, QT_TRANSLATE_NOOP("WelcomeWindow", "2. Combine"),
         QT_TRANSLATE_NOOP("WelcomeWindow",
                           "Drag name elements into the recipe. A double click on a tile changes "
                           "its settings.")},
    Step{WelcomePicture::Names, QT_TRANSLATE_NOOP("WelcomeWindow", "3. Rename"),
         QT_TRANSLATE_NOOP("WelcomeWindow",
                           "Look at the new names, then press Rename. Roll Back takes it back.")},
};

QLayout *makeStep(const Step &step, QWidget *parent)
{
    auto column = std::make_unique<QVBoxLayout>();
    column->setSpacing(SheetParts::kGap);
    auto *picture = new WelcomePicture(step.picture, parent);
    column->addWidget(picture);
    column->addWidget(SheetParts::title(WelcomeWindow::tr(step.title), parent));
    QLabel *text = SheetParts::muted(WelcomeWindow::tr(step.text), parent);
    text->setMinimumWidth(picture->width());
    text->setMaximumWidth(picture->width());
    column->addWidget(text);
    column->addStretch();
    return column.release(); // the layout's that it is added to
}

} // namespace

WelcomeWindow::WelcomeWindow(QWidget *parent)
    : QDialog(parent)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("How Tavrin Works"));
    auto *layout = SheetParts::column(this);
    layout->setSpacing(SheetParts::kMargin);
    auto *steps = new QHBoxLayout;
    layout->addLayout(steps);
    steps->setSpacing(SheetParts::kMargin);
    for (const Step &step : kSteps)
        steps->addLayout(makeStep(step, this));
    auto *atStart = new QCheckBox(tr("&Show this at start"), this);
    atStart->setChecked(UiSettings::showsWelcome());
    connect(atStart, &QCheckBox::toggled, this,
            [](bool shows) { UiSettings::setShowsWelcome(shows); });
    auto *begin = new QPushButton(tr("&Begin"), this);
    begin->setDefault(true);
    connect(begin, &QPushButton::clicked, this, &QDialog::accept);
    QHBoxLayout *row = SheetParts::buttonRow({begin});
    row->insertWidget(0, atStart);
    layout->addLayout(row);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    begin->setFocus();
}
