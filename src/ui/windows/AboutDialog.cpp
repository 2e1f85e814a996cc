// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/AboutDialog.h"

#include "commonprocs/TimeUtils.h"
#include "ui/controls/Icons.h"
#include "ui/windows/SheetParts.h"

#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSysInfo>

using namespace Qt::StringLiterals;

namespace {

constexpr int kIconSize = 64;
constexpr double kNameScale = 1.7;

QLabel *makeName(QWidget *parent)
{
    QLabel *name = SheetParts::title(u"Tavrin"_s, parent);
    QFont font = name->font();
    font.setPointSizeF(parent->font().pointSizeF() * kNameScale);
    name->setFont(font);
    return name;
}

QLabel *makeIcon(QWidget *parent)
{
    auto *icon = new QLabel(parent);
    icon->setPixmap(Icons::pixmap("tavrin"_L1, kIconSize, Qt::black, parent->devicePixelRatioF()));
    return icon;
}

} // namespace

AboutDialog::AboutDialog(QWidget *window)
    : QDialog(window)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("About Tavrin"));
    auto *layout = SheetParts::column(this);
    layout->setSpacing(SheetParts::kMargin);
    auto *top = new QHBoxLayout;
    layout->addLayout(top);
    top->setSpacing(SheetParts::kWideGap);
    top->addWidget(makeIcon(this), 0, Qt::AlignTop);
    auto *texts = new QVBoxLayout;
    top->addLayout(texts, 1);
    texts->setSpacing(SheetParts::kGap);
    texts->addWidget(makeName(this));
    texts->addWidget(
        SheetParts::muted(tr("Version %1").arg(QLatin1StringView(TAVRIN_VERSION)), this));
    texts->addWidget(SheetParts::text(
        tr("Renames many files at once, shows every name beforehand, and can take it back."),
        this));
    texts->addWidget(SheetParts::text(
        tr("Free software under the GNU General Public License, version 3 or later. It comes "
           "without any warranty."),
        this));
    texts->addSpacing(SheetParts::kGap);
    texts->addWidget(SheetParts::muted(
        tr("Made with Qt %1 and ICU %2. Pictures, music and films are read by a helper of its own, "
           "tavrin-metadata, with the libraries Exiv2, TagLib and FFmpeg.")
            .arg(QLatin1StringView(qVersion()), TimeUtils::icuVersion()),
        this));
    auto *copy = new QPushButton(tr("&Copy Details"), this);
    copy->setToolTip(tr("Copies the versions, for a report of a fault"));
    copy->setAutoDefault(false);
    auto *close = new QPushButton(tr("C&lose"), this);
    close->setDefault(true);
    connect(copy, &QPushButton::clicked, this,
            [] { QApplication::clipboard()->setText(AboutDialog::details()); });
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    layout->addLayout(SheetParts::buttonRow({copy, close}));
    layout->setSizeConstraint(QLayout::SetFixedSize);
    close->setFocus();
}

QString AboutDialog::details()
{
    return u"Tavrin " TAVRIN_VERSION "\nQt %1\nICU %2\n%3, %4, %5\n"_s.arg(
        QLatin1StringView(qVersion()), TimeUtils::icuVersion(), QSysInfo::prettyProductName(),
        QSysInfo::currentCpuArchitecture(), QApplication::platformName());
}
