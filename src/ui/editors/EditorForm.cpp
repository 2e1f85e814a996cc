// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/EditorForm.h"

#include "ui/controls/AccessibleLabel.h"
#include "ui/controls/Theme.h"

#include <QHBoxLayout>
#include <QPainter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int kStep = 8; ///< distances are multiples of it
constexpr int kLabelGap = 2 * kStep;
constexpr int kFormWidth = 296;
constexpr int kLabelWidth = 96;
constexpr int kMaxVisibleChoices = 20;

class Line : public QWidget
{
public:
    explicit Line(QWidget *parent)
        : QWidget(parent)
    {
        setFixedHeight(1);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter(this).fillRect(rect(), ThemeColors::of(palette()).border);
    }
};

bool stretches(const QWidget *control)
{
    return (control->sizePolicy().horizontalPolicy() & QSizePolicy::ExpandFlag) != 0;
}

} // namespace

void EditorForm::Row::setVisible(bool isVisible) const
{
    if (label != nullptr)
        label->setVisible(isVisible);
    body->setVisible(isVisible);
}

void EditorForm::Row::setEnabled(bool isEnabled) const
{
    if (label != nullptr)
        label->setEnabled(isEnabled);
    body->setEnabled(isEnabled);
}

EditorForm::EditorForm(QWidget &editor, const QString &title, std::function<void()> edited)
    : m_editor(editor)
    , m_edited(std::move(edited))
    , m_column(new QVBoxLayout(&editor))
    , m_grid(new QGridLayout)
    , m_note(new EditorLabel(QString(), EditorLabel::Tone::Muted, &editor))
    , m_preview(new SamplePreview(&editor))
{
    m_preview->hide();
    editor.setAccessibleName(title);
    m_column->setContentsMargins(2, 0, 2, 0);
    m_column->setSpacing(kStep + kStep / 2);
    m_column->setSizeConstraint(QLayout::SetMinimumSize);
    m_column->addStrut(kFormWidth);
    auto *head = new QHBoxLayout;
    head->addWidget(new EditorLabel(title, EditorLabel::Tone::Title, &editor));
    head->addStretch();
    head->addWidget(m_note);
    m_column->addLayout(head);
    m_column->addLayout(m_grid, 1);
    m_grid->setHorizontalSpacing(kLabelGap);
    m_grid->setVerticalSpacing(kStep);
    m_grid->setColumnMinimumWidth(0, kLabelWidth);
    m_grid->setColumnStretch(1, 1);
}

void EditorForm::setNote(const QString &note)
{
    m_note->setText(note);
}

EditorForm::Row EditorForm::addRow(const QString &label, std::initializer_list<QWidget *> controls)
{
    auto *caption = new EditorLabel(label, EditorLabel::Tone::Muted, &m_editor);
    caption->setBuddy(*controls.begin());
    auto *body = new QWidget(&m_editor);
    auto *line = new QHBoxLayout(body);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(kStep);
    bool isFilled = false;
    for (QWidget *control : controls) {
        const bool isNamed = qobject_cast<QLabel *>(control) != nullptr ||
                             qobject_cast<QAbstractButton *>(control) != nullptr ||
                             !control->accessibleName().isEmpty();
        if (!isNamed)
            control->setAccessibleName(QString(label).remove(u'&'));
        isFilled = isFilled || stretches(control);
        line->addWidget(control, stretches(control) ? control->sizeHint().width() : 0);
        if (qobject_cast<QComboBox *>(control) != nullptr)
            AccessibleLabel::add(*control);
    }
    if (!isFilled)
        line->addStretch();
    m_grid->addWidget(caption, m_rowCount, 0, Qt::AlignVCenter);
    m_grid->addWidget(body, m_rowCount++, 1);
    m_bodies.push_back(body);
    return {caption, body};
}

EditorForm::Row EditorForm::addWide(QWidget *widget)
{
    m_grid->addWidget(widget, m_rowCount++, 0, 1, 2);
    return {nullptr, widget};
}

EditorForm::Row EditorForm::addLine()
{
    return addWide(new Line(&m_editor));
}

void EditorForm::addPreview()
{
    addLine();
    addWide(m_preview);
    m_preview->show();
}

QLineEdit *EditorForm::text(const Setting<QString> &setting)
{
    auto *field = new QLineEdit(&m_editor);
    QObject::connect(field, &QLineEdit::textEdited, &m_editor,
                     [this, set = setting.set](const QString &text) {
                         set(text);
                         m_edited();
                     });
    addLoader([field, get = setting.get] {
        // The same text again would lose the cursor's place and what can be undone in the field.
        if (const QString text = get(); field->text() != text)
            field->setText(text);
    });
    return field;
}

NumberField *EditorForm::number(const Setting<qint64> &setting, NumberField::Range range)
{
    auto *field = new NumberField(range, &m_editor);
    field->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    QObject::connect(field, &NumberField::valueEdited, &m_editor,
                     [this, set = setting.set](qint64 value) {
                         set(value);
                         m_edited();
                     });
    addLoader([field, get = setting.get] { field->setValue(get()); });
    return field;
}

QComboBox *EditorForm::choice(const std::vector<Choice> &choices, const Setting<qint64> &setting)
{
    auto *box = new QComboBox(&m_editor);
    box->setSizePolicy(QSizePolicy::MinimumExpanding, QSizePolicy::Fixed);
    box->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    box->setMaxVisibleItems(kMaxVisibleChoices);
    setChoices(box, choices);
    QObject::connect(box, &QComboBox::activated, &m_editor,
                     [this, box, set = setting.set](int index) {
                         set(box->itemData(index).toLongLong());
                         m_edited();
                     });
    addLoader([box, get = setting.get] {
        const qint64 value = get();
        box->setPlaceholderText(QString::number(value));
        box->setCurrentIndex(box->findData(value));
    });
    return box;
}

void EditorForm::setChoices(QComboBox *box, const std::vector<Choice> &choices)
{
    for (std::size_t i = 0; i < choices.size(); ++i) {
        const int index = static_cast<int>(i);
        if (index == box->count())
            box->addItem(choices[i].text, choices[i].value);
        else if (box->itemText(index) != choices[i].text)
            box->setItemText(index, choices[i].text);
    }
}

QCheckBox *EditorForm::check(const QString &text, const Setting<bool> &setting)
{
    auto *box = new QCheckBox(text, &m_editor);
    QObject::connect(box, &QCheckBox::clicked, &m_editor, [this, set = setting.set](bool isOn) {
        set(isOn);
        m_edited();
    });
    addLoader([box, get = setting.get] { box->setChecked(get()); });
    return box;
}

QLabel *EditorForm::words(const QString &text)
{
    return new EditorLabel(text, EditorLabel::Tone::Muted, &m_editor);
}

void EditorForm::setName(QWidget *control, const QString &accessibleName)
{
    control->setAccessibleName(accessibleName);
}

void EditorForm::reload()
{
    for (const auto &loader : m_loaders)
        loader();
    keepWidth();
}

/// As wide as the rows that do not apply now would need, so that nothing moves when they do.
void EditorForm::keepWidth()
{
    int widest = m_grid->columnMinimumWidth(1);
    for (const QWidget *body : m_bodies)
        widest = std::max(widest, body->sizeHint().width());
    m_grid->setColumnMinimumWidth(1, widest);
}
