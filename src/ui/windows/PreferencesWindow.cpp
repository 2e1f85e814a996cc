// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/PreferencesWindow.h"

#include "settings/UserDefaults.h"
#include "settings/logging.h"
#include "ui/controls/Theme.h"
#include "ui/windows/ClosingButton.h"
#include "ui/windows/SheetParts.h"
#include "ui/windows/Translations.h"
#include "ui/windows/UiSettings.h"
#include "ui/windows/UpdateNotice.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kAppearance{"appearance"};
constexpr int kEverything = 1; ///< 0 shows as much, but counts as "no logging"
constexpr int kWarnings = 2;
constexpr int kErrors = 3;
constexpr int kPopUpCharacters = 30;
constexpr int kFeedCharacters = 44;

/// The row with the value; the first when there is none.
void choose(QComboBox &popUp, const QVariant &value)
{
    popUp.setCurrentIndex(std::max(0, popUp.findData(value)));
}

QComboBox *makePopUp(const QString &name, QWidget *parent)
{
    auto *popUp = new QComboBox(parent);
    popUp->setAccessibleName(name);
    popUp->setMinimumWidth(SheetParts::widthOf(popUp, kPopUpCharacters));
    return popUp;
}

} // namespace

PreferencesWindow::PreferencesWindow(QMenu *columns, QWidget *window)
    : PreferencesWindow(UpdateCheck::Limits(), columns, window)
{
}

PreferencesWindow::PreferencesWindow(const UpdateCheck::Limits &limits, QMenu *columns,
                                     QWidget *window)
    : QDialog(window)
    , m_check(limits, nullptr)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Preferences"));
    auto *layout = SheetParts::column(this);
    m_grid = new QGridLayout;
    layout->addLayout(m_grid);
    m_grid->setHorizontalSpacing(SheetParts::kWideGap);
    m_grid->setVerticalSpacing(SheetParts::kGap);
    addGeneral(columns);
    addDiagnostics();
    addUpdates();
    auto *close = new ClosingButton(tr("&Close"), this);
    close->setAutoDefault(false);
    layout->addSpacing(SheetParts::kGap);
    layout->addLayout(SheetParts::buttonRow({close}));
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

void PreferencesWindow::addSection(const QString &title)
{
    const int row = m_grid->rowCount();
    if (row > 1)
        m_grid->setRowMinimumHeight(row, SheetParts::kGap);
    m_grid->addWidget(SheetParts::title(title, this), row + 1, 0, 1, 2);
}

void PreferencesWindow::addRow(const QString &label, QWidget *control)
{
    const int row = m_grid->rowCount();
    if (!label.isEmpty()) {
        auto *text = new QLabel(label, this);
        text->setBuddy(control);
        m_grid->addWidget(text, row, 0, Qt::AlignVCenter);
    }
    const bool isField = qobject_cast<QLineEdit *>(control) || qobject_cast<QComboBox *>(control);
    m_grid->addWidget(control, row, 1, isField ? Qt::Alignment() : Qt::AlignLeading);
}

void PreferencesWindow::addGeneral(QMenu *columns)
{
    addSection(tr("General"));
    QComboBox *language = makePopUp(tr("Language"), this);
    language->addItem(tr("System language"), QString());
    const QStringList codes = Translations::available();
    for (const QString &code : codes)
        language->addItem(Translations::nativeName(code), code);
    choose(*language, UiSettings::language());
    language->setToolTip(tr("Takes effect when Tavrin is started the next time"));
    connect(language, &QComboBox::activated, this,
            [language] { UiSettings::setLanguage(language->currentData().toString()); });
    addRow(tr("&Language"), language);

    m_appearance = makePopUp(tr("Appearance"), this);
    m_appearance->addItem(tr("As the desktop"), static_cast<int>(Theme::Scheme::Desktop));
    m_appearance->addItem(tr("Light"), static_cast<int>(Theme::Scheme::Light));
    m_appearance->addItem(tr("Dark"), static_cast<int>(Theme::Scheme::Dark));
    connect(m_appearance, &QComboBox::activated, this, [this] {
        const int scheme = m_appearance->currentData().toInt();
        UserDefaults::setValue(kAppearance, scheme);
        Theme::apply(static_cast<Theme::Scheme>(scheme));
    });
    addRow(tr("&Appearance"), m_appearance);

    auto *chooser = new QPushButton(tr("Choose"), this);
    chooser->setAutoDefault(false);
    chooser->setAccessibleName(tr("Columns"));
    chooser->setToolTip(tr("Which columns the list of files shows. New windows have the same."));
    chooser->setMenu(columns);
    chooser->setEnabled(columns != nullptr);
    addRow(tr("C&olumns"), chooser);
}

void PreferencesWindow::addDiagnostics()
{
    addSection(tr("Diagnostics"));
    m_logLevel = makePopUp(tr("Messages"), this);
    m_logLevel->addItem(tr("Everything"), kEverything);
    m_logLevel->addItem(tr("Warnings and errors"), kWarnings);
    m_logLevel->addItem(tr("Errors only"), kErrors);
    m_logLevel->setToolTip(tr("What Tavrin writes to the system's log"));
    connect(m_logLevel, &QComboBox::activated, this,
            [this] { setLogLevel(m_logLevel->currentData().toInt()); });
    addRow(tr("&Messages"), m_logLevel);
}

void PreferencesWindow::addUpdates()
{
    addSection(tr("Updates"));
    m_feed = new QLineEdit(UiSettings::updateFeed().toDisplayString(), this);
    m_feed->setPlaceholderText(u"https://"_s);
    m_feed->setAccessibleName(tr("Address of the update feed"));
    m_feed->setMinimumWidth(SheetParts::widthOf(m_feed, kFeedCharacters));
    addRow(tr("&Feed"), m_feed);
    auto *atStart = new QCheckBox(tr("Look for a new version at &start, once a day"), this);
    atStart->setChecked(UiSettings::looksForUpdates());
    addRow({}, atStart);
    m_checkNow = new QPushButton(tr("Check &Now"), this);
    m_checkNow->setAutoDefault(false);
    addRow({}, m_checkNow);
    m_found = SheetParts::muted(UpdateNotice::noFeed(), this);
    m_grid->addWidget(m_found, m_grid->rowCount(), 0, 1, 2);

    const auto enable = [this, atStart] {
        const bool hasFeed = !m_feed->text().trimmed().isEmpty();
        atStart->setEnabled(hasFeed);
        m_checkNow->setEnabled(hasFeed && !m_check.isUnderWay());
        m_found->setText(hasFeed ? QString() : UpdateNotice::noFeed());
    };
    enable();
    connect(m_feed, &QLineEdit::textChanged, this, enable);
    connect(m_feed, &QLineEdit::editingFinished, this, [this] { takeFeed(); });
    connect(atStart, &QCheckBox::toggled, this,
            [](bool looks) { UiSettings::setLooksForUpdates(looks); });
    connect(m_checkNow, &QPushButton::clicked, this, &PreferencesWindow::checkNow);
}

/// What cannot be asked is not stored, and false.
bool PreferencesWindow::takeFeed()
{
    const QUrl url(m_feed->text().trimmed(), QUrl::StrictMode);
    const bool isUsable = url.isEmpty() || m_check.accepts(url);
    if (isUsable)
        UiSettings::setUpdateFeed(url);
    else
        m_found->setText(tr("The address must begin with https://."));
    return isUsable;
}

void PreferencesWindow::checkNow()
{
    if (!takeFeed())
        return;
    m_checkNow->setEnabled(false);
    m_found->setText(tr("Looking..."));
    m_check.start(UiSettings::updateFeed(), [this](const UpdateCheck::Answer &answer) {
        m_checkNow->setEnabled(true);
        m_found->setText(UpdateNotice::sentence(answer));
    });
}

void PreferencesWindow::showEvent(QShowEvent *event)
{
    choose(*m_appearance, static_cast<int>(Theme::scheme()));
    choose(*m_logLevel, logLevel());
    QDialog::showEvent(event);
}
