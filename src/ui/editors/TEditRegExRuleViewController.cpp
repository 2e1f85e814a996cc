// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/TEditRegExRuleViewController.h"

#include "document/NameGeneration.h"
#include "ui/editors/RuleSampler.h"

#include <QHBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr int kGap = 8;
constexpr qsizetype kExamples = 3;
constexpr qint64 kSteps =
    150; ///< for all examples of a key press; a fraction of what a name may take
constexpr qsizetype kLongestExample = 24;
constexpr QChar kUp(0x2191);
constexpr QChar kDown(0x2193);

const TRegExPairs &pairsOf(const TRegExRule &rule)
{
    static const TRegExPairs kNone;
    return rule.regArray() ? *rule.regArray() : kNone;
}

} // namespace

TEditRegExRuleViewController::TEditRegExRuleViewController(const TRulePtr &rule,
                                                           const EditorContext &context)
    : TRuleViewController(rule, context)
    , m_pairs(new RegexPairsView(this))
    , m_problem(new EditorLabel(QString(), EditorLabel::Tone::Problem, this))
    , m_help(new RegexCheatSheet(this))
{
    addSourceRows();
    form().addLine();
    form().addWide(m_pairs);
    form().addWide(makeButtons());
    form().addWide(m_problem);
    form().addWide(m_help);
    m_problem->setWordWrap(true);
    m_help->hide();
    connect(m_help, &RegexCheatSheet::snippetChosen, m_pairs, &RegexPairsView::insertSnippet);
    connect(m_pairs, &RegexPairsView::pairsEdited, this,
            &TEditRegExRuleViewController::pairsEdited);
    connect(m_pairs, &RegexPairsView::rowsChanged, this, &TEditRegExRuleViewController::orderFocus);
    connect(m_pairs, &RegexPairsView::currentRowChanged, this,
            &TEditRegExRuleViewController::showState);
    form().addLoader([this] { m_pairs->setPairs(pairsOf(regex())); });
    finish(m_source);
    orderFocus();
    auto *first = m_pairs->findChild<QLineEdit *>();
    setFocusProxy(first != nullptr ? static_cast<QWidget *>(first) : m_add);
}

void TEditRegExRuleViewController::addSourceRows()
{
    m_source = form().choice({{0, {}}, {1, {}}},
                             eitherOf(regex(), &TRegExRule::source, &TRegExRule::setSource));
    form().addRow(tr("Rea&d"), {m_source});
    m_replacesAll =
        form().check(tr("&Put the result in place of the whole name so far"),
                     switchOf(regex(), &TRegExRule::replaceAll, &TRegExRule::setReplaceAll));
    m_replacesAll->setToolTip(tr("Otherwise it is added at the end, and the name stands twice."));
    form().addWide(m_replacesAll);
}

QWidget *TEditRegExRuleViewController::makeButtons()
{
    auto *body = new QWidget(this);
    auto *line = new QHBoxLayout(body);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(kGap);
    m_add = new QPushButton(tr("&Add Pair"), body);
    m_add->setAutoDefault(false);
    connect(m_add, &QPushButton::clicked, m_pairs, &RegexPairsView::addPair);
    m_up = makeMoveButton(tr("Move pair up"), -1, body);
    m_down = makeMoveButton(tr("Move pair down"), 1, body);
    m_helpButton = new QPushButton(tr("Help"), body);
    m_helpButton->setAutoDefault(false);
    m_helpButton->setCheckable(true);
    m_helpButton->setToolTip(tr("What patterns are made of"));
    connect(m_helpButton, &QPushButton::toggled, this, &TEditRegExRuleViewController::showHelp);
    line->addWidget(m_add);
    line->addWidget(m_up);
    line->addWidget(m_down);
    line->addStretch();
    line->addWidget(m_helpButton);
    return body;
}

QToolButton *TEditRegExRuleViewController::makeMoveButton(const QString &name, int by,
                                                          QWidget *parent)
{
    auto *button = new QToolButton(parent);
    button->setText(QString(by < 0 ? kUp : kDown));
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::StrongFocus);
    button->setAccessibleName(name);
    button->setToolTip(
        u"%1 (%2)"_s.arg(name, QKeySequence(Qt::ALT | (by < 0 ? Qt::Key_Up : Qt::Key_Down))
                                   .toString(QKeySequence::NativeText)));
    connect(button, &QToolButton::clicked, m_pairs, [this, by] { m_pairs->moveCurrentRow(by); });
    return button;
}

void TEditRegExRuleViewController::pairsEdited()
{
    regex().setRegArray(m_pairs->pairs());
    ruleEdited();
}

/// From top to bottom, whenever rows have come.
void TEditRegExRuleViewController::orderFocus()
{
    QList<QWidget *> order{m_source, m_replacesAll};
    order += m_pairs->focusOrder();
    order += {m_add, m_up, m_down, m_helpButton};
    order += m_help->findChildren<QWidget *>();
    order.removeIf([](const QWidget *each) { return each->focusPolicy() == Qt::NoFocus; });
    for (qsizetype i = 1; i < order.size(); ++i)
        setTabOrder(order.at(i - 1), order.at(i));
}

void TEditRegExRuleViewController::showHelp(bool isShown)
{
    m_help->setVisible(isShown);
    updateGeometry();
}

void TEditRegExRuleViewController::compile()
{
    const TRegExPairs &pairs = pairsOf(regex());
    m_compiled.resize(pairs.size());
    for (std::size_t i = 0; i < pairs.size(); ++i)
        if (m_compiled[i].pattern() != pairs[i]->match ||
            m_compiled[i].replacement() != pairs[i]->replace)
            m_compiled[i] = RegexReplacer(pairs[i]->match, pairs[i]->replace);
}

/// Why and where the first of the bad pairs is wrong; empty when all can be used.
QString TEditRegExRuleViewController::problem() const
{
    for (std::size_t i = 0; i < m_compiled.size(); ++i)
        if (!m_compiled[i].isValid())
            return m_compiled.size() == 1
                       ? m_compiled[i].problem()
                       : tr("Pair %1: %2").arg(i + 1).arg(m_compiled[i].problem());
    return {};
}

void TEditRegExRuleViewController::refresh()
{
    compile();
    const QString text = problem();
    m_problem->setText(text);
    m_problem->setVisible(!text.isEmpty());
    m_up->setEnabled(m_pairs->currentRow() > 0);
    m_down->setEnabled(m_pairs->currentRow() + 1 < m_pairs->count());
    m_replacesAll->setEnabled(regex().source() > 0);
    form().setNote(regex().source() > 0 && regex().replaceAll() != 0
                       ? tr("rewrites the name so far")
                       : tr("adds to the name"));
    refreshSources();
}

void TEditRegExRuleViewController::refreshSources()
{
    const TDocument &document = context().document;
    const std::shared_ptr<TFileObject> sample = sampleFile();
    m_fileNames.clear();
    m_namesBefore.clear();
    if (sample) {
        const qsizetype row = RuleSampler::rowOf(document, *sample);
        const TFileList &files = document.sourceObjectArray();
        for (auto file = files.begin() + row; file != files.end() && m_fileNames.size() < kExamples;
             ++file)
            m_fileNames += (*file)->fileName();
        m_namesBefore = RuleSampler::namesBefore(document, theRule(), row, kExamples);
    }
    const auto words = [](const QString &choice, const QStringList &examples) {
        return examples.isEmpty() || examples.front().isEmpty()
                   ? choice
                   : u"%1  \u2013  %2"_s.arg(choice, examples.front().left(kLongestExample));
    };
    EditorForm::setChoices(m_source, {{0, words(tr("the file's name"), m_fileNames)},
                                      {1, words(tr("the name so far"), m_namesBefore)}});
}

QList<SamplePreview::Line> TEditRegExRuleViewController::previewLines() const
{
    const QStringList &names = regex().source() == 0 ? m_fileNames : m_namesBefore;
    if (m_compiled.empty())
        return {SamplePreview::note(tr("Without a pair every file gets \"???RegEx???\"."))};
    if (names.isEmpty())
        return TRuleViewController::previewLines();
    if (!problem().isEmpty())
        return {SamplePreview::note(tr("No example yet."))};
    RegexReplacer::Budget budget;
    budget.steps = kSteps;
    QList<SamplePreview::Line> lines;
    for (const QString &name : names)
        lines += lineFor(name, budget);
    return lines;
}

SamplePreview::Line TEditRegExRuleViewController::lineFor(const QString &before,
                                                          RegexReplacer::Budget &budget) const
{
    QString after = before;
    for (const RegexReplacer &replacer : m_compiled)
        after = replacer.replaceAll(after, budget);
    if (budget.exceeded)
        return SamplePreview::note(tr("The pattern takes long for %1.").arg(before));
    SamplePreview::Line line = SamplePreview::change(
        before, NameGeneration::postProcessFragment(after, context().document.theOptions()));
    // Later pairs match in what the earlier ones have made of it.
    if (m_pairs->currentRow() <= 0)
        for (const RegexReplacer::Match &match : m_compiled.front().matches(before, budget))
            line.front().marks += {match.start, match.length};
    return line;
}
