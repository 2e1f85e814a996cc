// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/RegexPairsView.h"

#include "ui/controls/Icons.h"
#include "ui/editors/EditorLabel.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int kGap = 8;
constexpr int kVisibleRows = 5;
constexpr int kLeastWidth = 440;
constexpr int kLetters = 52; ///< of a row, so that a new pair can be read
constexpr int kAround = 92;  ///< the fields of a row
constexpr QStringView kArrow = u"\u2192";
constexpr QStringView kArrowToLeft = u"\u2190";

} // namespace

RegexPairsView::RegexPairsView(QWidget *parent)
    : QScrollArea(parent)
    , m_column(nullptr)
{
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    auto *body = new QWidget(this);
    m_column = new QVBoxLayout(body);
    m_column->setContentsMargins(0, 0, 0, 0);
    m_column->setSpacing(kGap);
    m_column->setAlignment(Qt::AlignTop);
    setWidget(body);
    body->setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
}

void RegexPairsView::setPairs(const TRegExPairs &pairs)
{
    setRowCount(pairs.size());
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        if (m_rows[i].match->text() != pairs[i]->match)
            m_rows[i].match->setText(pairs[i]->match);
        if (m_rows[i].replace->text() != pairs[i]->replace)
            m_rows[i].replace->setText(pairs[i]->replace);
    }
}

TRegExPairsPtr RegexPairsView::pairs() const
{
    auto pairs = std::make_shared<TRegExPairs>();
    for (const Row &row : m_rows)
        pairs->push_back(
            std::make_shared<TRegExMatchReplace>(row.match->text(), row.replace->text()));
    return pairs;
}

int RegexPairsView::currentRow() const
{
    return std::min(m_currentRow, count() - 1);
}

void RegexPairsView::setRowCount(std::size_t count)
{
    if (count == m_rows.size())
        return;
    while (m_rows.size() > count) {
        m_rows.back().body->hide();
        m_rows.back().body->deleteLater();
        m_rows.pop_back();
    }
    while (m_rows.size() < count) {
        m_rows.push_back(makeRow());
        m_column->addWidget(m_rows.back().body);
        m_rows.back().body->show();
    }
    updateGeometry();
    Q_EMIT rowsChanged();
}

QList<QWidget *> RegexPairsView::focusOrder() const
{
    QList<QWidget *> order;
    for (const Row &row : m_rows)
        order << row.match << row.replace << row.remove;
    return order;
}

RegexPairsView::Row RegexPairsView::makeRow()
{
    const QString number = QString::number(m_rows.size() + 1);
    auto *body = new QWidget(widget());
    auto *line = new QHBoxLayout(body);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(kGap);
    auto *remove = new QToolButton(body);
    const Row row{body, makeField(tr("Pattern %1").arg(number), body),
                  makeField(tr("Replacement %1").arg(number), body), remove};
    row.match->setPlaceholderText(tr("pattern"));
    row.replace->setPlaceholderText(tr("nothing"));
    remove->setFocusPolicy(Qt::StrongFocus);
    remove->setIcon(Icons::icon("close"_L1));
    remove->setAutoRaise(true);
    remove->setAccessibleName(tr("Remove pair %1").arg(number));
    remove->setToolTip(tr("Remove this pair"));
    connect(remove, &QToolButton::clicked, this, [this, body] { removeRow(rowWith(body)); });
    auto *numberLabel = new EditorLabel(number, EditorLabel::Tone::Muted, body);
    numberLabel->setMinimumWidth(fontMetrics().horizontalAdvance(u"00"_s));
    line->addWidget(numberLabel);
    line->addWidget(row.match, 3);
    line->addWidget(new EditorLabel((isRightToLeft() ? kArrowToLeft : kArrow).toString(),
                                    EditorLabel::Tone::Muted, body));
    line->addWidget(row.replace, 2);
    line->addWidget(remove);
    return row;
}

QLineEdit *RegexPairsView::makeField(const QString &name, QWidget *body)
{
    auto *field = new QLineEdit(body);
    field->setFont(EditorLabel::codeFont(font()));
    field->setLayoutDirection(Qt::LeftToRight); // patterns read that way in every language
    field->setAccessibleName(name);
    field->installEventFilter(this);
    connect(field, &QLineEdit::textEdited, this, &RegexPairsView::pairsEdited);
    return field;
}

bool RegexPairsView::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn) {
        m_currentRow = rowWith(watched);
        ensureWidgetVisible(m_rows[static_cast<std::size_t>(m_currentRow)].body, 0, 0);
        Q_EMIT currentRowChanged();
    } else if (event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        const bool isUp = key->key() == Qt::Key_Up;
        if ((isUp || key->key() == Qt::Key_Down) && key->modifiers() == Qt::AltModifier) {
            moveCurrentRow(isUp ? -1 : 1);
            return true;
        }
    }
    return QScrollArea::eventFilter(watched, event);
}

int RegexPairsView::rowWith(const QObject *widget) const
{
    const auto row = std::find_if(m_rows.begin(), m_rows.end(), [widget](const Row &each) {
        return each.body == widget || each.match == widget || each.replace == widget;
    });
    return static_cast<int>(row - m_rows.begin());
}

void RegexPairsView::addPair()
{
    const TRegExMatchReplace fresh;
    setRowCount(m_rows.size() + 1);
    m_rows.back().match->setText(fresh.match);
    m_rows.back().replace->setText(fresh.replace);
    m_rows.back().match->setFocus(Qt::OtherFocusReason);
    m_rows.back().match->selectAll();
    m_currentRow = count() - 1;
    Q_EMIT pairsEdited();
}

void RegexPairsView::removeRow(int row)
{
    if (row < 0 || row >= count())
        return;
    TRegExPairsPtr left = pairs();
    left->erase(left->begin() + row);
    setPairs(*left);
    m_currentRow = std::clamp(row, 0, std::max(count() - 1, 0));
    Q_EMIT pairsEdited();
}

void RegexPairsView::moveCurrentRow(int by)
{
    const int from = currentRow();
    const int to = from + by;
    if (from < 0 || to < 0 || to >= count())
        return;
    const TRegExPairsPtr moved = pairs();
    std::swap((*moved)[static_cast<std::size_t>(from)], (*moved)[static_cast<std::size_t>(to)]);
    setPairs(*moved);
    m_rows[static_cast<std::size_t>(to)].match->setFocus(Qt::OtherFocusReason);
    m_currentRow = to;
    Q_EMIT pairsEdited();
}

void RegexPairsView::insertSnippet(const QString &snippet, int cursorBack, bool isForReplacement)
{
    if (m_rows.empty())
        addPair();
    const Row &row = m_rows[static_cast<std::size_t>(currentRow())];
    QLineEdit *field = isForReplacement ? row.replace : row.match;
    field->setFocus(Qt::OtherFocusReason);
    field->insert(snippet);
    field->setCursorPosition(field->cursorPosition() - cursorBack);
    Q_EMIT pairsEdited();
}

/// As wide without a row, so that nothing moves aside when the first one comes.
QSize RegexPairsView::sizeHint() const
{
    const QSize one = minimumSizeHint();
    const int others = std::clamp(count() - 1, 0, kVisibleRows - 1);
    const int letter = QFontMetrics(EditorLabel::codeFont(font())).averageCharWidth();
    return {std::max(one.width(), kLetters * letter + kAround),
            one.height() + others * (one.height() + kGap)};
}

QSize RegexPairsView::minimumSizeHint() const
{
    return {kLeastWidth, m_rows.empty() ? 0 : m_rows.front().body->sizeHint().height()};
}
