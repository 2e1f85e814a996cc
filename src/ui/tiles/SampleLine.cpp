// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tiles/SampleLine.h"

#include "commonprocs/ByteNames.h"
#include "ui/controls/Icons.h"
#include "ui/controls/Theme.h"
#include "ui/controls/ToolTip.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPainter>
#include <QStyle>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int kGap = 12;
constexpr int kPadding = 8;
constexpr int kLeastNewName = 240; ///< the note gives way to it
constexpr QChar kPeriod = u'.';

} // namespace

SampleLine::SampleLine(TDocument &document, QWidget *parent)
    : QWidget(parent)
    , m_document(document)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAccessibleName(tr("Sample"));
    m_later.setSingleShot(true);
    connect(&m_later, &QTimer::timeout, this, &SampleLine::followBatch);
    const auto later = [this] { m_later.start(0); };
    connect(&document, &TDocument::filesInserted, this, later);
    connect(&document, &TDocument::filesRemoved, this, later);
    connect(&document, &TDocument::filesReordered, this, later);
    connect(&document, &TDocument::filesReplaced, this, later);
    connect(&document, &TDocument::filesChanged, this, later);
    connect(&document, &TDocument::rulesChanged, this, later);
    connect(&document, &TDocument::extensionHandlerChanged, this, later);
    follow();
}

void SampleLine::setFile(const std::shared_ptr<TFileObject> &file)
{
    m_file = file;
    follow();
}

/// Lists change row by row; what that means for the line is looked up once.
void SampleLine::followBatch()
{
    const TFileList &files = m_document.sourceObjectArray();
    if (m_file && std::find(files.begin(), files.end(), m_file) == files.end())
        m_file.reset();
    follow();
}

const TFileObject *SampleLine::file() const
{
    const TFileList &files = m_document.sourceObjectArray();
    if (m_file)
        return m_file.get();
    return files.empty() ? nullptr : files.front().get();
}

/// With the extension that stays when the handler is not to change it, which analyses leave out.
ColouredText SampleLine::newName(const TFileObject &file) const
{
    const ThemeColors colors = ThemeColors::of(palette());
    ColouredText name;
    if (m_document.colorCode())
        name = ColouredText::of(file.attributedTargetName(), palette());
    else
        name.append(ByteNames::forDisplay(file.targetName()), colors.ink);
    TExtensionHandler &handler = m_document.theExtensionHandler();
    const QString extension = file.attributedTargetExtension().string();
    if (!extension.isEmpty())
        name.append(ByteNames::forDisplay(extension), colors.extension);
    else if (handler.handlingMethod() == TExtensionHandler::kUnchanged &&
             !file.extension().isEmpty())
        name.append(ByteNames::forDisplay(kPeriod + handler.handleCaseFor(file.extension())),
                    colors.muted);
    return name;
}

void SampleLine::follow()
{
    const TFileObject *shown = file();
    m_oldName = shown == nullptr ? QString()
                                 : ByteNames::forDisplay(shown->sourceURL().lastPathComponent());
    m_newName =
        shown == nullptr || m_document.ruleArray().empty() ? ColouredText() : newName(*shown);
    const QString both =
        m_newName.isEmpty() ? m_oldName : tr("%1 becomes %2").arg(m_oldName, m_newName.text());
    setAccessibleDescription(both);
    setToolTip(ToolTip::of(both));
    update();
}

QSize SampleLine::sizeHint() const
{
    return {kLeastNewName, fontMetrics().height() + 2 * kPadding};
}

QSize SampleLine::minimumSizeHint() const
{
    return sizeHint();
}

void SampleLine::paintEvent(QPaintEvent *)
{
    const ThemeColors colors = ThemeColors::of(palette());
    const bool isMirrored = layoutDirection() == Qt::RightToLeft;
    const Qt::Alignment start = isMirrored ? Qt::AlignRight : Qt::AlignLeft;
    const Qt::Alignment end = isMirrored ? Qt::AlignLeft : Qt::AlignRight;
    const auto placed = [&](int x, int width) {
        return QStyle::visualRect(layoutDirection(), rect(), QRect(x, 0, width, height()));
    };
    QPainter painter(this);
    painter.fillRect(QRect(0, 0, width(), 1), colors.border);
    const auto say = [&](const QString &text, const QColor &ink, const QRect &place,
                         Qt::Alignment alignment) {
        ColouredText line;
        line.append(text, ink);
        line.elided(font(), place.width(), ink).paint(painter, place, font(), alignment);
    };
    if (m_oldName.isEmpty())
        return say(tr("Drop files to see their new names here"), colors.muted, rect(), start);

    const QFontMetrics metrics = fontMetrics();
    const int oldWidth = std::min(metrics.horizontalAdvance(m_oldName) + 1, width() * 3 / 10);
    say(m_oldName, colors.muted, placed(0, oldWidth), start);
    const int side = Icons::extent(metrics);
    const int newStart = oldWidth + kGap + side + kGap;
    QPixmap arrow = Icons::pixmap("arrow"_L1, side, colors.muted, devicePixelRatioF());
    if (isMirrored)
        arrow = arrow.transformed(QTransform::fromScale(-1, 1));
    painter.drawPixmap(placed(oldWidth + kGap, side).topLeft() + QPoint(0, (height() - side) / 2),
                       arrow);

    if (m_newName.isEmpty())
        return say(tr("Put elements into the recipe to make a new name"), colors.muted,
                   placed(newStart, width() - newStart), start);
    // Whoever has dragged a first tile here may not know yet that it can be changed.
    const QString note = m_document.ruleArray().size() == 1 ? tr("double-click a tile to change it")
                                                            : tr("the selected file, part by part");
    const int noteWidth = metrics.horizontalAdvance(note) + 1;
    int newWidth = width() - newStart;
    const int wish = std::max(static_cast<int>(m_newName.width(font())), kLeastNewName);
    if (wish + kGap + noteWidth <= newWidth) {
        say(note, colors.muted, placed(width() - noteWidth, noteWidth), end);
        newWidth -= kGap + noteWidth;
    }
    m_newName.elided(font(), newWidth, colors.muted)
        .paint(painter, placed(newStart, newWidth), font(), start);
}

void SampleLine::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange)
        follow();
    if (event->type() == QEvent::FontChange)
        updateGeometry();
}
