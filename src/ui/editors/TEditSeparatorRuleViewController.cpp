// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/TEditSeparatorRuleViewController.h"

#include "ui/editors/RuleSampler.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {

constexpr int kCount = 10;
constexpr int kColumns = 5;
constexpr int kGap = 8;

QString wordFor(int index)
{
    static constexpr const char *kWords[kCount] = {
        QT_TRANSLATE_NOOP("TEditSeparatorRuleViewController", "Blank"),
        QT_TRANSLATE_NOOP("TEditSeparatorRuleViewController", "Underscore"),
        QT_TRANSLATE_NOOP("TEditSeparatorRuleViewController", "Hyphen"),
        QT_TRANSLATE_NOOP("TEditSeparatorRuleViewController", "Asterisk"),
        QT_TRANSLATE_NOOP("TEditSeparatorRuleViewController", "Period"),
        QT_TRANSLATE_NOOP("TEditSeparatorRuleViewController", "Exclamation mark"),
        QT_TRANSLATE_NOOP("TEditSeparatorRuleViewController", "Opening parenthesis"),
        QT_TRANSLATE_NOOP("TEditSeparatorRuleViewController", "Closing parenthesis"),
        QT_TRANSLATE_NOOP("TEditSeparatorRuleViewController", "Opening brace"),
        QT_TRANSLATE_NOOP("TEditSeparatorRuleViewController", "Closing brace"),
    };
    return QCoreApplication::translate("TEditSeparatorRuleViewController", kWords[index]);
}

/// The character that an index stands for, as the rule itself has it.
QString characterFor(int index)
{
    const std::shared_ptr<TSeparatorRule> rule = TSeparatorRule::decoding();
    rule->setSeparatorIndex(index);
    rule->getSeparator();
    return rule->theText();
}

} // namespace

TEditSeparatorRuleViewController::TEditSeparatorRuleViewController(const TRulePtr &rule,
                                                                   const EditorContext &context)
    : TRuleViewController(rule, context)
    , m_buttons(new QButtonGroup(this))
{
    form().addWide(makeButtons());
    form().addLoader([this] {
        const qint64 index = ruleAs<TSeparatorRule>().separatorIndex();
        if (QAbstractButton *button = m_buttons->button(static_cast<int>(index)))
            button->setChecked(true);
    });
    connect(m_buttons, &QButtonGroup::idClicked, this, &TEditSeparatorRuleViewController::choose);
    finish(m_buttons->button(static_cast<int>(ruleAs<TSeparatorRule>().separatorIndex())));
}

QWidget *TEditSeparatorRuleViewController::makeButtons()
{
    auto *body = new QWidget(this);
    auto *grid = new QGridLayout(body);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(kGap);
    const int widest = fontMetrics().horizontalAdvance(tr("blank")) + 2 * kGap;
    for (int column = 0; column < kColumns; ++column)
        grid->setColumnMinimumWidth(column, widest);
    for (int index = 0; index < kCount; ++index) {
        const QString character = characterFor(index);
        const bool isBlank = character.trimmed().isEmpty();
        auto *button = new QPushButton(isBlank ? tr("blank") : character, body);
        button->setCheckable(true);
        button->setAutoDefault(false);
        button->setAccessibleName(wordFor(index));
        button->setToolTip(wordFor(index));
        button->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
        button->installEventFilter(this);
        m_buttons->addButton(button, index);
        grid->addWidget(button, index / kColumns, index % kColumns);
    }
    return body;
}

void TEditSeparatorRuleViewController::choose(int index)
{
    if (ruleAs<TSeparatorRule>().separatorIndex() == index)
        return;
    ruleAs<TSeparatorRule>().setSeparatorIndex(index);
    ruleEdited();
}

bool TEditSeparatorRuleViewController::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return TRuleViewController::eventFilter(watched, event);
    const int towards = isRightToLeft() ? -1 : 1;
    int step = 0;
    switch (static_cast<QKeyEvent *>(event)->key()) {
    case Qt::Key_Left:
        step = -towards;
        break;
    case Qt::Key_Right:
        step = towards;
        break;
    case Qt::Key_Up:
        step = -kColumns;
        break;
    case Qt::Key_Down:
        step = kColumns;
        break;
    default:
        return TRuleViewController::eventFilter(watched, event);
    }
    const int next = m_buttons->id(qobject_cast<QAbstractButton *>(watched)) + step;
    if (QAbstractButton *button = m_buttons->button(next)) {
        button->setFocus(Qt::TabFocusReason);
        button->click();
    }
    return true;
}

void TEditSeparatorRuleViewController::refresh()
{
    const qint64 index = ruleAs<TSeparatorRule>().separatorIndex();
    form().setNote(index >= 0 && index < kCount ? wordFor(static_cast<int>(index)).toLower()
                                                : QString());
}

QList<SamplePreview::Line> TEditSeparatorRuleViewController::previewLines() const
{
    return {{SamplePreview::result(
        RuleSampler::fragmentOfCopy(context().document, theRule(), TFileObject()))}};
}
