// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/DateRows.h"

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kHour = 11;

constexpr std::array kFormats{
    QT_TRANSLATE_NOOP("DateRows", "long date"),
    QT_TRANSLATE_NOOP("DateRows", "date"),
    QT_TRANSLATE_NOOP("DateRows", "long time"),
    QT_TRANSLATE_NOOP("DateRows", "time"),
    QT_TRANSLATE_NOOP("DateRows", "year"),
    QT_TRANSLATE_NOOP("DateRows", "short year"),
    QT_TRANSLATE_NOOP("DateRows", "name of month"),
    QT_TRANSLATE_NOOP("DateRows", "month"),
    QT_TRANSLATE_NOOP("DateRows", "day"),
    QT_TRANSLATE_NOOP("DateRows", "name of weekday"),
    QT_TRANSLATE_NOOP("DateRows", "weekday, Sunday is 1"),
    QT_TRANSLATE_NOOP("DateRows", "hour"),
    QT_TRANSLATE_NOOP("DateRows", "minute"),
    QT_TRANSLATE_NOOP("DateRows", "second"),
    QT_TRANSLATE_NOOP("DateRows", "half of day"),
    QT_TRANSLATE_NOOP("DateRows", "half of day, one letter"),
};

} // namespace

DateRows::DateRows(EditorForm &form, TDateRule &rule)
    : m_rule(rule)
    , m_format(form.choice(choices(rule, TDate()),
                           settingOf(rule, &TDateRule::dateFormat, &TDateRule::setDateFormat)))
    , m_formatRow(form.addRow(tr("Sho&wn as"), {m_format}))
    , m_hourRow(form.addRow(tr("H&ours"), {form.choice({{1, tr("0 to 23")}, {0, tr("12, 1 to 11")}},
                                                       eitherOf(rule, &TDateRule::timeFormat,
                                                                &TDateRule::setTimeFormat))}))
{
}

void DateRows::refresh(TDate date, bool isVisible)
{
    m_formatRow.setVisible(isVisible);
    m_hourRow.setVisible(isVisible && m_rule.dateFormat() == kHour);
    if (isVisible)
        EditorForm::setChoices(m_format, choices(m_rule, date));
}

std::vector<EditorForm::Choice> DateRows::choices(const TDateRule &rule, TDate date)
{
    // Not a new rule, which would take a colour.
    const std::shared_ptr<TDateRule> shown = TDateRule::decoding();
    shown->setTimeFormat(rule.timeFormat());
    std::vector<EditorForm::Choice> choices;
    for (std::size_t format = 0; format < kFormats.size(); ++format) {
        shown->setDateFormat(static_cast<qint64>(format));
        const QString example = shown->getDateFromDate(date);
        const QString words = tr(kFormats[format]);
        choices.push_back({static_cast<qint64>(format),
                           example.isEmpty() ? words : u"%1  \u2013  %2"_s.arg(example, words)});
    }
    return choices;
}
