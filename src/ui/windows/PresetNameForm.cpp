// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/PresetNameForm.h"

#include "ui/windows/SheetParts.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <utility>

namespace {

constexpr int kCharacters = 44;
constexpr int kMostName = 200; ///< with its extension, a file name of the usual limit

} // namespace

PresetNameForm::PresetNameForm(const QString &suggestion, Answered answered, QWidget *parent)
    : QWidget(parent)
    , m_answered(std::move(answered))
{
    setAccessibleName(tr("Save Preset"));
    auto *name = new QLineEdit(suggestion, this);
    name->setMaxLength(kMostName);
    name->setAccessibleName(tr("Name of the preset"));
    name->setMinimumWidth(SheetParts::widthOf(name, kCharacters));
    name->selectAll();
    auto *label = new QLabel(tr("&Name"), this);
    label->setBuddy(name);
    QLabel *problem = SheetParts::muted(QString(), this);
    problem->setMinimumWidth(0);
    auto *cancel = new QPushButton(tr("Cancel"), this);
    auto *save = new QPushButton(tr("Save"), this);
    save->setDefault(true);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(SheetParts::kGap);
    layout->addWidget(SheetParts::title(tr("Save Preset"), this));
    layout->addWidget(label);
    layout->addWidget(name);
    layout->addWidget(problem);
    layout->addSpacing(SheetParts::kGap);
    layout->addLayout(SheetParts::buttonRow({cancel, save}));
    setFocusProxy(name);

    const auto check = [name, problem, save] {
        const bool hasSlash = name->text().contains(u'/');
        problem->setText(hasSlash ? tr("A name cannot contain a slash.")
                                  : tr("A preset of the same name is replaced."));
        save->setEnabled(!hasSlash);
    };
    connect(name, &QLineEdit::textChanged, this, check);
    check();
    connect(cancel, &QPushButton::clicked, this, [this] { answer(std::nullopt); });
    connect(save, &QPushButton::clicked, this, [this, name] {
        const QString text = name->text();
        answer(text.isEmpty() ? std::nullopt : std::optional(text));
    });
}

PresetNameForm::~PresetNameForm()
{
    if (const Answered answered = std::exchange(m_answered, {}))
        answered(std::nullopt);
}

void PresetNameForm::answer(const std::optional<QString> &name)
{
    const Answered answered = std::exchange(m_answered, {});
    Q_EMIT finished();
    if (answered)
        answered(name);
}
