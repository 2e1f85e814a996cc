// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/TEditCountRuleViewController.h"

#include "ui/editors/LengthRows.h"
#include "ui/editors/RuleSampler.h"

#include <QGuiApplication>

using namespace Qt::StringLiterals;

namespace {

constexpr NumberField::Range kWidths{0, 255};
constexpr std::size_t kFirstNumbers = 3;
constexpr QChar kIsolate(0x2066);
constexpr QChar kEndIsolate(0x2069);
constexpr QStringView kGap = u"\u2026";

/// Numbers count from left to right in every language.
QString inOrder(const QString &numbers)
{
    return QGuiApplication::isRightToLeft() ? kIsolate + numbers + kEndIsolate : numbers;
}

/// What counts on to the number of the file in that row; wraps around like the counter itself.
qint64 offsetOf(std::size_t row, qint64 increment)
{
    return static_cast<qint64>(static_cast<quint64>(row) * static_cast<quint64>(increment));
}

} // namespace

TEditCountRuleViewController::TEditCountRuleViewController(const TRulePtr &rule,
                                                           const EditorContext &context)
    : TRuleViewController(rule, context)
{
    auto &counter = ruleAs<TCountRule>();
    NumberField *start =
        form().number(settingOf(counter, &TCountRule::startValue, &TCountRule::setStartValue), {});
    NumberField *step =
        form().number(settingOf(counter, &TCountRule::increment, &TCountRule::setIncrement), {});
    EditorForm::setName(step, tr("Step"));
    start->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_startRow = form().addRow(tr("&Start at"), {start, form().words(tr("step")), step});

    form().addRow(tr("For&mat"), {form().choice({{0, inOrder(u"1, 2, 3"_s)},
                                                 {1, inOrder(u"i, ii, iii"_s)},
                                                 {2, inOrder(u"I, II, III"_s)}},
                                                settingOf(counter, &TCountRule::counterFormat,
                                                          &TCountRule::setCounterFormat))});

    QComboBox *width =
        form().choice({{0, tr("automatic")}, {1, tr("at least")}},
                      eitherOf(counter, &TCountRule::manualPadding, &TCountRule::setManualPadding));
    width->setToolTip(tr("Automatic: as many digits as the highest number of the batch needs."));
    m_width =
        form().number(settingOf(counter, &TCountRule::padding, &TCountRule::setPadding), kWidths);
    EditorForm::setName(m_width, tr("Number of characters"));
    QComboBox *character =
        form().choice(PaddingChoices::choices(),
                      PaddingChoices::folded(settingOf(counter, &TCountRule::paddingChar,
                                                       &TCountRule::setPaddingChar)));
    EditorForm::setName(character, tr("Character to fill up with"));
    character->setToolTip(tr("What stands before shorter numbers."));
    form().addRow(tr("&Width"), {width, m_width, character});

    m_perExtension = form().check(
        tr("&Count each extension on its own"),
        settingOf(counter, &TCountRule::individualFileTypes, &TCountRule::setIndividualFileTypes));
    form().addWide(m_perExtension);
    form().addWide(
        form().check(tr("&Give every file the number of files instead"),
                     switchOf(counter, &TCountRule::counterType, &TCountRule::setCounterType)));
    finish(start);
}

void TEditCountRuleViewController::refresh()
{
    const auto &counter = ruleAs<TCountRule>();
    const bool counts = counter.counterType() == 0;
    m_startRow.setEnabled(counts);
    m_perExtension->setEnabled(counts);
    m_width->setVisible(counter.manualPadding() != 0);
    form().setNote(!counts                         ? tr("total")
                   : counter.individualFileTypes() ? tr("per extension")
                                                   : tr("per batch"));
}

QList<SamplePreview::Line> TEditCountRuleViewController::previewLines() const
{
    const TRulePtr copy = RuleSampler::preparedCopy(theRule());
    auto &counter = static_cast<TCountRule &>(*copy);
    const bool isPerExtension = counter.counterType() == 0 && counter.individualFileTypes();
    return {isPerExtension ? numbersPerExtension(counter) : numbers(counter)};
}

SamplePreview::Line TEditCountRuleViewController::numbers(TCountRule &counter) const
{
    const TFileObject none;
    const std::size_t count = context().document.sourceObjectArray().size();
    const auto next = [&] {
        return SamplePreview::result(RuleSampler::fragment(context().document, counter, none));
    };
    if (counter.counterType() != 0)
        return {next()};
    SamplePreview::Line line;
    const bool isShort = count > 0 && count <= kFirstNumbers + 1;
    for (std::size_t row = 0; row < (isShort ? count : kFirstNumbers); ++row)
        line += next();
    if (isShort)
        return line;
    line += SamplePreview::aside(kGap.toString());
    if (count > 0) {
        counter.setGlobalCounter(offsetOf(count - 1, counter.increment()));
        line += next();
    }
    return line;
}

SamplePreview::Line TEditCountRuleViewController::numbersPerExtension(TCountRule &counter) const
{
    const TFileList &files = context().document.sourceObjectArray();
    if (files.empty())
        return numbers(counter);
    SamplePreview::Line line;
    for (std::size_t row = 0; row < std::min(files.size(), kFirstNumbers + 1); ++row) {
        const QString extension = files[row]->extension();
        line += SamplePreview::aside(extension.isEmpty() ? tr("no extension") : u'.' + extension);
        line +=
            SamplePreview::result(RuleSampler::fragment(context().document, counter, *files[row]));
    }
    if (files.size() > kFirstNumbers + 1)
        line += SamplePreview::aside(kGap.toString());
    return line;
}
