// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/batch/StatusLine.h"

#include "document/TErrorTypes.h"
#include "ui/controls/BadgeButton.h"
#include "ui/controls/ElidedLabel.h"
#include "ui/controls/FoldingRow.h"
#include "ui/controls/Icons.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLocale>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kBarDelay = 150ms;
constexpr int kBarWidth = 150;
constexpr int kLeastBarWidth = 40;
constexpr int kApart = 8;
constexpr int kFarApart = 24;
constexpr int kSteps = 1000; ///< of the bar; a batch may have more files than an int counts

} // namespace

StatusLine::StatusLine(QWidget *parent)
    : QWidget(parent)
    , m_text(new ElidedLabel(this))
    , m_bar(new QProgressBar(this))
    , m_cancel(makeButton(tr("Ends this; what has come so far stays (Esc)")))
    , m_warnings(makeButton(tr("Show the problems")))
    , m_criticals(makeButton(tr("Show the problems")))
    , m_testRun(new BadgeButton(tr("Test Run"), BadgeButton::Weight::Plain, this))
    , m_rollBack(new BadgeButton(tr("Roll Back"), BadgeButton::Weight::Plain, this))
    , m_rename(new BadgeButton(tr("Rename"), BadgeButton::Weight::Accented, this))
{
    m_text->setTextFormat(Qt::PlainText);
    m_text->setAccessibleName(tr("Status"));
    m_bar->setMinimumWidth(kLeastBarWidth);
    m_bar->setMaximumWidth(kBarWidth);
    m_bar->setTextVisible(false);
    m_bar->setAccessibleName(tr("Progress"));
    QSizePolicy policy = m_bar->sizePolicy();
    policy.setVerticalPolicy(QSizePolicy::Fixed);
    m_bar->setSizePolicy(policy);
    m_bar->hide();
    followLook();
    m_testRun->setToolTip(tr("Works out all names anew and lists the problems; touches no file"));
    m_rollBack->setToolTip(tr("Undoes the last rename of this batch"));
    m_rename->setMinimumWidth(m_rename->sizeHint().width() * 5 / 4);
    m_rename->installEventFilter(this);
    m_barDelay.setSingleShot(true);
    m_barDelay.setInterval(kBarDelay);
    connect(&m_barDelay, &QTimer::timeout, this, [this] {
        m_bar->show();
        m_cancel->setVisible(m_isCancellable);
    });
    m_cancel->setText(tr("Cancel"));
    connect(m_cancel, &QToolButton::clicked, this, &StatusLine::cancelClicked);
    for (const QToolButton *count : {m_warnings, m_criticals})
        connect(count, &QToolButton::clicked, this, &StatusLine::problemsClicked);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->setSpacing(0); // they keep room for their badges around them
    buttons->addWidget(m_testRun);
    buttons->addWidget(m_rollBack);
    buttons->addWidget(m_rename);
    auto *counts = new QHBoxLayout;
    counts->setSpacing(kApart);
    counts->addWidget(m_warnings);
    counts->addWidget(m_criticals);
    auto *state = new QHBoxLayout;
    state->setSpacing(kFarApart);
    state->addWidget(m_text);
    auto *work = new QHBoxLayout;
    work->setSpacing(kApart);
    work->addWidget(m_bar);
    work->addWidget(m_cancel);
    state->addLayout(work);
    state->addLayout(counts);
    state->addStretch();
    auto *parts = new FoldingRow(kFarApart, 0, this);
    parts->addLayout(state, 1);
    parts->addLayout(buttons);
}

QToolButton *StatusLine::makeButton(const QString &toolTip)
{
    auto *button = new QToolButton(this);
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    button->setToolTip(toolTip);
    button->hide();
    return button;
}

void StatusLine::setText(const QString &text)
{
    m_text->setText(text);
}

void StatusLine::setBusy(bool busy)
{
    m_isBusy = busy;
    updateBar();
}

void StatusLine::showProgress(qint64 currVal, qint64 maxVal)
{
    m_hasProgress = true;
    updateBar();
    m_bar->setValue(maxVal > 0 ? static_cast<int>(currVal * kSteps / maxVal) : kSteps);
}

void StatusLine::hideProgress()
{
    m_hasProgress = false;
    updateBar();
}

void StatusLine::setCancellable(bool cancellable)
{
    m_isCancellable = cancellable;
    updateBar();
}

void StatusLine::updateBar()
{
    m_bar->setRange(0, m_hasProgress ? kSteps : 0); // without an end it shows that work goes on
    if (!m_isBusy && !m_hasProgress && !m_isCancellable) {
        m_barDelay.stop();
        m_bar->hide();
    } else if (m_bar->isHidden() && !m_barDelay.isActive()) {
        m_barDelay.start();
    }
    m_cancel->setVisible(m_isCancellable && !m_bar->isHidden());
}

void StatusLine::setProblems(qsizetype warnings, qsizetype criticals)
{
    m_warnings->setText(warnings == 1 ? tr("1 warning")
                                      : tr("%1 warnings").arg(locale().toString(warnings)));
    m_criticals->setText(tr("%1 critical").arg(locale().toString(criticals)));
    m_warnings->setVisible(warnings > 0);
    m_criticals->setVisible(criticals > 0);
}

void StatusLine::setBadge(qint64 criticals)
{
    m_rename->setBadge(criticals);
}

QWidget *StatusLine::problemsAnchor() const
{
    if (m_criticals->isVisible())
        return m_criticals;
    return m_warnings->isVisible() ? static_cast<QWidget *>(m_warnings) : m_testRun;
}

bool StatusLine::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_rename && event->type() == QEvent::ToolTip)
        Q_EMIT renameToolTipWanted();
    return QWidget::eventFilter(watched, event);
}

void StatusLine::followLook()
{
    const int side = Icons::extent(fontMetrics());
    for (QToolButton *button : {m_cancel, m_warnings, m_criticals})
        button->setIconSize({side, side});
    m_cancel->setIcon(Icons::icon("clear"_L1));
    m_warnings->setIcon(Icons::forLevel(TErrorTypes::kWarning));
    m_criticals->setIcon(Icons::forLevel(TErrorTypes::kCritical));
}

void StatusLine::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        followLook();
    QWidget::changeEvent(event);
}
