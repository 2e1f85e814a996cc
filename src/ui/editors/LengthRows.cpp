// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/LengthRows.h"

#include "commonprocs/StringAdditions.h"

namespace {

constexpr qint64 kOtherCharacter = 5; ///< and everything above it
constexpr NumberField::Range kWidths{0, 255};
constexpr NumberField::Range kLimits{1, 255};

} // namespace

std::vector<EditorForm::Choice> PaddingChoices::choices()
{
    std::vector<EditorForm::Choice> choices;
    for (qint64 index = 0; index <= kOtherCharacter; ++index) {
        const QChar character = paddingCharacter(index);
        choices.push_back({index, character == u' '
                                      ? QCoreApplication::translate("PaddingChoices", "blank")
                                      : QString(character)});
    }
    return choices;
}

Setting<qint64> PaddingChoices::folded(const Setting<qint64> &setting)
{
    return {[get = setting.get] {
                const qint64 index = get();
                return index >= 0 && index < kOtherCharacter ? index : kOtherCharacter;
            },
            setting.set};
}

LengthRows::LengthRows(EditorForm &form, TDateRule &rule)
    : m_rule(rule)
    , m_width(form.number(settingOf(rule, &TDateRule::padding, &TDateRule::setPadding), kWidths))
    , m_character(form.choice(PaddingChoices::choices(),
                              PaddingChoices::folded(settingOf(rule, &TDateRule::paddingChar,
                                                               &TDateRule::setPaddingChar))))
    , m_side(
          form.choice({{0, tr("in front")}, {1, tr("at the end")}},
                      eitherOf(rule, &TDateRule::paddingPosition, &TDateRule::setPaddingPosition)))
    , m_limits(form.check(tr("Not more than"),
                          switchOf(rule, &TDateRule::limitSize, &TDateRule::setLimitSize)))
    , m_limit(form.number(settingOf(rule, &TDateRule::maxSize, &TDateRule::setMaxSize), kLimits))
{
    EditorForm::setName(m_width, tr("Width to fill up to"));
    EditorForm::setName(m_character, tr("Character to fill up with"));
    EditorForm::setName(m_side, tr("Side to fill up"));
    EditorForm::setName(m_limit, tr("Most characters"));
    m_width->setToolTip(tr("Shorter texts are filled up to this many characters; 0 does nothing."));
    m_fillRow = form.addRow(tr("F&ill up to"), {m_width, m_character, m_side});
    m_limitRow = form.addRow(tr("Li&mit"), {m_limits, m_limit, form.words(tr("characters"))});
}

void LengthRows::refresh(Reach reach)
{
    m_fillRow.setVisible(reach != Reach::Nothing);
    m_limitRow.setVisible(reach == Reach::Full);
    m_side->setVisible(reach == Reach::Full);
    const bool fills = m_rule.padding() > 0;
    m_character->setEnabled(fills);
    m_side->setEnabled(fills);
    m_limit->setEnabled(m_rule.limitSize() != 0);
}
