// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/table/FilterRow.h"

#include "ui/controls/FoldingRow.h"
#include "ui/controls/Icons.h"
#include "ui/controls/PillButton.h"
#include "ui/controls/Theme.h"

#include <QAction>
#include <QButtonGroup>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace {

/// Milliseconds without a key before names are searched.
constexpr int kPause = 90;
constexpr int kSearchLetters = 26;
constexpr int kLeastSearchLetters = 12;
constexpr int kGap = 8;

struct PillText
{
    const char *title;
    const char *toolTip;
};
constexpr std::array<PillText, FileKinds::kFilterCount> kPills{{
    {QT_TRANSLATE_NOOP("FilterRow", "All"), QT_TRANSLATE_NOOP("FilterRow", "Show all files")},
    {QT_TRANSLATE_NOOP("FilterRow", "Changed"),
     QT_TRANSLATE_NOOP("FilterRow", "Show only files that get another name")},
    {QT_TRANSLATE_NOOP("FilterRow", "Unchanged"),
     QT_TRANSLATE_NOOP("FilterRow", "Show only files whose new name is the one they have")},
    {QT_TRANSLATE_NOOP("FilterRow", "Problems"),
     QT_TRANSLATE_NOOP("FilterRow", "Show only files with warnings or critical problems")},
}};

} // namespace

FilterRow::FilterRow(QWidget *parent)
    : QWidget(parent)
    , m_tools(new QHBoxLayout)
    , m_remark(new QLabel(this))
    , m_search(new QLineEdit(this))
{
    auto *parts = new FoldingRow(kGap, kGap, this);
    auto *pills = new QHBoxLayout;
    parts->addLayout(pills);
    parts->addLayout(m_tools, 1);
    pills->setSpacing(kGap);
    m_tools->setSpacing(kGap);
    auto *group = new QButtonGroup(this);
    for (std::size_t i = 0; i < m_pills.size(); ++i) {
        auto *pill = new PillButton(tr(kPills[i].title), this);
        pill->setToolTip(tr(kPills[i].toolTip));
        m_pills[i] = pill;
        group->addButton(pill, static_cast<int>(i));
        pills->addWidget(pill);
    }
    m_pills[0]->setChecked(true);
    followChecked();
    connect(group, &QButtonGroup::idToggled, this, [this](int id, bool isOn) {
        if (!isOn)
            return;
        followChecked();
        Q_EMIT filterChosen(static_cast<Filter>(id));
    });
    pills->addStretch();
    m_tools->addStretch();
    m_remark->setForegroundRole(QPalette::PlaceholderText);
    m_remark->setMinimumWidth(1); // is cut before the row grows wider than its window
    m_remark->hide();
    m_tools->addWidget(m_remark);

    m_search->setPlaceholderText(tr("Search names"));
    m_search->setAccessibleName(tr("Search names"));
    m_search->setToolTip(tr("Select files whose old or new name contains this text"));
    m_search->setClearButtonEnabled(true);
    m_lens = m_search->addAction(Icons::icon("search"_L1), QLineEdit::LeadingPosition);
    m_search->installEventFilter(this);
    m_tools->addWidget(m_search, 1); // up to its width, then the room before it
    followFont();
    m_pause.setSingleShot(true);
    connect(m_search, &QLineEdit::textChanged, this, [this] { m_pause.start(kPause); });
    connect(&m_pause, &QTimer::timeout, this, &FilterRow::searchNow);
}

void FilterRow::setCount(Filter filter, qint64 count)
{
    m_pills[static_cast<std::size_t>(filter)]->setCount(count);
}

void FilterRow::chooseAll()
{
    m_pills[0]->setChecked(true);
}

void FilterRow::clearSearch()
{
    m_search->clear();
    m_searched.clear();
    m_pause.stop();
}

/// The tabulator stops at the chosen filter only; the arrow keys go to the others.
void FilterRow::followChecked()
{
    for (PillButton *pill : m_pills)
        pill->setFocusPolicy(pill->isChecked() ? Qt::StrongFocus : Qt::ClickFocus);
}

void FilterRow::setRemark(const QString &remark)
{
    m_remark->setText(remark);
    m_remark->setVisible(!remark.isEmpty());
    m_search->setAccessibleDescription(remark);
}

void FilterRow::addControl(QWidget *control)
{
    m_tools->insertWidget(m_tools->indexOf(m_remark), control);
    setTabOrder(m_pills.back(), control);
    setTabOrder(control, m_search);
}

void FilterRow::searchNow()
{
    m_pause.stop();
    if (m_search->text() == m_searched)
        return;
    m_searched = m_search->text();
    Q_EMIT searchChanged(m_searched);
}

bool FilterRow::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_search || event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    switch (static_cast<const QKeyEvent &>(*event).key()) {
    case Qt::Key_Escape:
        if (m_search->text().isEmpty())
            Q_EMIT searchLeft();
        m_search->clear();
        searchNow();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        searchNow();
        Q_EMIT searchConfirmed();
        return true;
    case Qt::Key_Down:
        searchNow();
        Q_EMIT searchLeft();
        return true;
    default:
        return false;
    }
}

void FilterRow::followFont()
{
    const QFontMetrics metrics = fontMetrics();
    const int icons = 2 * Icons::extent(metrics);
    m_search->setMinimumWidth(metrics.averageCharWidth() * kLeastSearchLetters + icons);
    m_search->setMaximumWidth(metrics.averageCharWidth() * kSearchLetters + icons);
}

void FilterRow::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_lens != nullptr)
        m_lens->setIcon(Icons::icon("search"_L1));
    if (event->type() == QEvent::FontChange && m_search != nullptr)
        followFont();
}
