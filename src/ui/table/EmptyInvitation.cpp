// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/table/EmptyInvitation.h"

#include "ui/controls/Icons.h"
#include "ui/controls/Theme.h"
#include "ui/table/FileDrops.h"

#include <QDragEnterEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr int kDrawingSize = 112;
constexpr int kInset = 16;
constexpr int kMargin = kInset + 8;
constexpr int kSpacing = 16;
constexpr qreal kTitleScale = 1.3;
constexpr qreal kQuiet = 0.6;

} // namespace

EmptyInvitation::EmptyInvitation(TDocument &document, QWidget *parent)
    : QWidget(parent)
    , m_document(document)
    , m_drawing(new QWidget(this))
{
    setAcceptDrops(true);
    setAccessibleName(tr("Empty batch"));
    m_drawing->setFixedSize(kDrawingSize, kDrawingSize);
    auto *title = new QLabel(tr("Drop files or folders here"), this);
    QFont font = title->font();
    font.setPointSizeF(font.pointSizeF() * kTitleScale);
    font.setWeight(QFont::Medium);
    title->setFont(font);
    auto *files = new QPushButton(tr("Add Files..."), this);
    m_files = files;
    auto *folder = new QPushButton(tr("Add Folder..."), this);
    connect(files, &QPushButton::clicked, this, &EmptyInvitation::addFilesRequested);
    connect(folder, &QPushButton::clicked, this, &EmptyInvitation::addFoldersRequested);

    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    buttons->addStretch();
    buttons->addWidget(files);
    buttons->addWidget(folder);
    buttons->addStretch();
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    layout->setSpacing(kSpacing);
    layout->addStretch(4);
    layout->addWidget(m_drawing, 0, Qt::AlignHCenter);
    layout->addWidget(title, 0, Qt::AlignHCenter);
    layout->addLayout(buttons);
    layout->addStretch(5);
}

void EmptyInvitation::takeFocus()
{
    m_files->setFocus(Qt::OtherFocusReason);
}

QSize EmptyInvitation::minimumSizeHint() const
{
    const QSize all = layout()->minimumSize();
    const int drawing = m_drawing->isHidden() ? 0 : kDrawingSize + kSpacing;
    return {all.width(), all.height() - drawing};
}

void EmptyInvitation::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    m_drawing->setVisible(height() >= minimumSizeHint().height() + kDrawingSize + kSpacing);
}

void EmptyInvitation::paintEvent(QPaintEvent *)
{
    const ThemeColors colors = ThemeColors::of(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frame = QRectF(rect()).adjusted(kInset, kInset, -kInset, -kInset);
    QColor wash = colors.accent;
    wash.setAlphaF(m_isHighlighted ? 0.08F : 0.0F);
    painter.setBrush(wash);
    painter.setPen(QPen(m_isHighlighted ? colors.accent : colors.border, m_isHighlighted ? 2 : 1.5,
                        Qt::DashLine, Qt::RoundCap));
    painter.drawRoundedRect(frame, Theme::kCardRadius, Theme::kCardRadius);
    if (m_drawing->isHidden())
        return;
    const QColor ink = m_isHighlighted ? colors.accent : colors.muted;
    if (!m_isHighlighted)
        painter.setOpacity(kQuiet); // of the whole drawing, so that crossing lines do not show
    painter.drawPixmap(m_drawing->pos(),
                       Icons::pixmap("drop-invitation"_L1, kDrawingSize, ink, devicePixelRatioF()));
}

void EmptyInvitation::setHighlighted(bool highlighted)
{
    m_isHighlighted = highlighted;
    update();
}

void EmptyInvitation::dragEnterEvent(QDragEnterEvent *event)
{
    if (FileDrops::isWelcome(*event->mimeData(), m_document))
        setHighlighted(FileDrops::accept(*event, m_document));
    else
        event->ignore();
}

void EmptyInvitation::dragMoveEvent(QDragMoveEvent *event)
{
    if (m_isHighlighted)
        FileDrops::accept(*event, m_document);
    else
        event->ignore();
}

void EmptyInvitation::dragLeaveEvent(QDragLeaveEvent *)
{
    setHighlighted(false);
}

void EmptyInvitation::dropEvent(QDropEvent *event)
{
    setHighlighted(false);
    if (FileDrops::accept(*event, m_document))
        event->setAccepted(m_document.tableViewAcceptDrop(*event->mimeData(), 0));
}
