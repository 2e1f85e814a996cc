// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/AboutDialog.h"

#include "commonprocs/TimeUtils.h"
#include "ui/controls/Icons.h"
#include "ui/windows/ClosingButton.h"
#include "ui/windows/SheetParts.h"

#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSysInfo>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

constexpr int kIconSize = 64;
constexpr double kNameScale = 1.7;
constexpr int kMillisecondsToAnswer = 10'000;
constexpr int kMillisecondsToDie = 100;
constexpr qint64 kLongestAnswer = 400; ///< bytes

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

AboutDialog::AboutDialog(const QString &helper, QWidget *window)
    : QDialog(window)
    , m_readers({u"Exiv2"_s, u"TagLib"_s, u"FFmpeg"_s})
    , m_libraries(SheetParts::muted(QString(), this))
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
    texts->addWidget(m_libraries);
    auto *copy = new QPushButton(tr("&Copy Details"), this);
    copy->setToolTip(tr("Copies the versions, for a report of a fault"));
    copy->setAutoDefault(false);
    auto *close = new ClosingButton(tr("C&lose"), this);
    close->setDefault(true);
    connect(copy, &QPushButton::clicked, this,
            [this] { QApplication::clipboard()->setText(details()); });
    layout->addLayout(SheetParts::buttonRow({copy, close}));
    layout->setSizeConstraint(QLayout::SetFixedSize);
    close->setFocus();
    showLibraries();
    askFor(helper);
}

AboutDialog::~AboutDialog()
{
    m_helper.disconnect(this);
    m_helper.kill();
    m_helper.waitForFinished(kMillisecondsToDie);
}

void AboutDialog::showLibraries()
{
    m_libraries->setText(
        tr("Made with Qt %1 and ICU %2. Pictures, music and films are read by a helper of its own, "
           "tavrin-metadata, with the libraries %3.")
            .arg(QLatin1StringView(qVersion()), TimeUtils::icuVersion(),
                 locale().createSeparatedList(m_readers)));
}

/// Only the helper knows, since it alone has these libraries.
void AboutDialog::askFor(const QString &helper)
{
    connect(&m_helper, &QProcess::finished, this, [this](int code, QProcess::ExitStatus status) {
        const QString answer = QString::fromUtf8(m_helper.read(kLongestAnswer)).trimmed();
        if (status != QProcess::NormalExit || code != 0 || answer.isEmpty())
            return;
        m_readers = answer.split(u'\n');
        showLibraries();
    });
    QTimer::singleShot(kMillisecondsToAnswer, &m_helper, &QProcess::kill);
    m_helper.start(helper, {u"--version"_s});
}

QString AboutDialog::details() const
{
    return u"Tavrin " TAVRIN_VERSION "\nQt %1\nICU %2\n%3\n%4, %5, %6\n"_s.arg(
        QLatin1StringView(qVersion()), TimeUtils::icuVersion(), m_readers.join(u'\n'),
        QSysInfo::prettyProductName(), QSysInfo::currentCpuArchitecture(),
        QApplication::platformName());
}
