// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/CSVProgress.h"

#include "ui/editors/CSVLoader.h"
#include "ui/editors/EditorLabel.h"

#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int kMargin = 20;
constexpr int kGap = 12;
constexpr int kCharacters = 56;

} // namespace

CSVProgress::CSVProgress(const QString &fileName, QWidget *editor)
    : QDialog(editor)
    , m_bar(new QProgressBar(this))
{
    setWindowModality(Qt::WindowModal);
    setAccessibleName(tr("Reading the CSV file"));
    m_bar->setRange(0, CSVLoader::kWhole);
    m_bar->setTextVisible(false);
    m_bar->setAccessibleName(tr("Progress"));
    m_bar->setMinimumWidth(fontMetrics().averageCharWidth() * kCharacters);
    auto *title =
        new EditorLabel(tr("Reading %1...").arg(fileName), EditorLabel::Tone::Title, this);
    title->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto *cancel = new QPushButton(tr("Cancel"), this);
    cancel->setAutoDefault(false); // no reading ends by a stray Return
    connect(cancel, &QPushButton::clicked, this, &CSVProgress::reject);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    layout->setSpacing(kGap);
    layout->addWidget(title);
    layout->addWidget(m_bar);
    layout->addWidget(cancel, 0, Qt::AlignRight);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

void CSVProgress::setValue(int part)
{
    m_bar->setValue(part);
}
