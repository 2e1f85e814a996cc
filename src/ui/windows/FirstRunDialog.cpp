// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/FirstRunDialog.h"

#include "ui/windows/SheetParts.h"
#include "ui/windows/SymbolLabel.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr int kIconSize = 28;

struct Promise
{
    QLatin1StringView icon;
    const char *title;
    const char *text;
};
constexpr std::array kPromises{
    Promise{"eye"_L1, QT_TRANSLATE_NOOP("FirstRunDialog", "You see every name first"),
            QT_TRANSLATE_NOOP("FirstRunDialog",
                              "New names and their problems are shown while you choose. Nothing is "
                              "renamed before you say so.")},
    Promise{"roll-back"_L1, QT_TRANSLATE_NOOP("FirstRunDialog", "You can always go back"),
            QT_TRANSLATE_NOOP("FirstRunDialog",
                              "Every run is written down and can be rolled back, today or next "
                              "year. A rename never replaces another file.")},
    Promise{
        "lock"_L1, QT_TRANSLATE_NOOP("FirstRunDialog", "Your files stay yours"),
        QT_TRANSLATE_NOOP("FirstRunDialog",
                          "Everything happens on this computer. Tavrin goes to the network only "
                          "if you ask it to look for new versions.")},
};

} // namespace

FirstRunDialog::FirstRunDialog(std::function<void()> finished, QWidget *parent)
    : QDialog(parent)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Welcome"));
    auto *layout = SheetParts::column(this);
    layout->addWidget(SheetParts::title(tr("Welcome to Tavrin"), this));
    layout->addSpacing(SheetParts::kGap);
    auto *grid = new QGridLayout;
    layout->addLayout(grid);
    grid->setHorizontalSpacing(SheetParts::kWideGap);
    grid->setVerticalSpacing(2);
    for (int i = 0; i < static_cast<int>(kPromises.size()); ++i) {
        const Promise &promise = kPromises[static_cast<std::size_t>(i)];
        grid->addWidget(new SymbolLabel(promise.icon, kIconSize, this), 3 * i, 0, 2, 1,
                        Qt::AlignTop);
        QLabel *title = SheetParts::text(tr(promise.title), this);
        QFont bold = title->font();
        bold.setBold(true);
        title->setFont(bold);
        grid->addWidget(title, 3 * i, 1);
        grid->addWidget(SheetParts::muted(tr(promise.text), this), 3 * i + 1, 1);
        grid->setRowMinimumHeight(3 * i + 2, SheetParts::kWideGap);
    }
    auto *start = new QPushButton(tr("Start"), this);
    start->setDefault(true);
    connect(start, &QPushButton::clicked, this, &QDialog::accept);
    connect(this, &QDialog::finished, this, [finished = std::move(finished)] { finished(); });
    layout->addLayout(SheetParts::buttonRow({start}));
    layout->setSizeConstraint(QLayout::SetFixedSize);
    start->setFocus();
}
