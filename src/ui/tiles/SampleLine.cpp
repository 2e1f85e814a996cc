// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tiles/SampleLine.h"

#include "commonprocs/ByteNames.h"
#include "document/NameGeneration.h"
#include "ui/controls/Icons.h"
#include "ui/controls/Theme.h"
#include "ui/controls/ToolTip.h"

#include <QEvent>
#include <QFontMetrics>
#include <QLocale>
#include <QPainter>
#include <QStyle>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int kGap = 12;
constexpr int kPadding = 8;
constexpr int kLeastNewName = 240; ///< hints give way to more of it, news to no less
constexpr int kLeastNews = 60;

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

ColouredText SampleLine::newName(const TFileObject &file) const
{
    const ThemeColors colors = ThemeColors::of(palette());
    ColouredText name;
    if (m_document.colorCode())
        name = ColouredText::of(file.attributedTargetName(), palette());
    else
        name.append(ByteNames::forDisplay(file.targetName()), colors.ink);
    const NameGeneration::Extension extension =
        NameGeneration::extensionForPeople(file, m_document.theExtensionHandler());
    if (!extension.text.isEmpty())
        name.append(ByteNames::forDisplay(extension.text),
                    extension.isKept ? colors.muted : colors.extension);
    return name;
}

/// What has become of the batch and cannot be seen of its names.
QString SampleLine::news() const
{
    if (m_document.areNamesOld())
        return tr("Out of date: Test Run (F5) shows the new names");
    const std::optional<TDocument::RunOutcome> run = m_document.runOutcome();
    if (!run || run->renamed == 0)
        return {};
    const auto number = [this](qsizetype files) { return locale().toString(files); };
    if (run->restored >= run->renamed)
        return tr("The old names are back. Add the files again to rename them.");
    if (run->restored > 0)
        return tr("%1 of %2 files have their old names back.")
            .arg(number(run->restored), number(run->renamed));
    const QString renamed = run->failed > 0
                                ? tr("Renamed %1 of %2 files.")
                                      .arg(number(run->renamed), number(run->renamed + run->failed))
                            : run->renamed == 1 ? tr("Renamed 1 file.")
                                                : tr("Renamed %1 files.").arg(number(run->renamed));
    return run->canBeUndone ? renamed + u' ' + tr("Roll Back takes it back.") : renamed;
}

/// Whoever has dragged a first tile here may not know yet that it can be changed.
QString SampleLine::hint() const
{
    return m_document.ruleArray().size() == 1 ? tr("double-click a tile to change it")
                                              : tr("the selected file, part by part");
}

void SampleLine::follow()
{
    const TFileObject *shown = file();
    m_oldName = shown == nullptr ? QString()
                                 : ByteNames::forDisplay(shown->sourceURL().lastPathComponent());
    m_newName =
        shown == nullptr || m_document.ruleArray().empty() ? ColouredText() : newName(*shown);
    m_news = m_newName.isEmpty() ? QString() : news();
    QString all =
        m_newName.isEmpty() ? m_oldName : tr("%1 becomes %2").arg(m_oldName, m_newName.text());
    if (!m_news.isEmpty())
        all += u'\n' + m_news;
    setAccessibleDescription(all);
    setToolTip(ToolTip::of(all));
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
    const int newWidth = width() - newStart - paintNote(painter, width() - newStart);
    m_newName.elided(font(), newWidth, colors.muted)
        .paint(painter, placed(newStart, newWidth), font(), start);
}

/// At the end of the line, of which names and note have so much together; what it took of that.
int SampleLine::paintNote(QPainter &painter, int place) const
{
    const ThemeColors colors = ThemeColors::of(palette());
    const bool isNews = !m_news.isEmpty();
    const QString note = isNews ? m_news : hint();
    const int wish = static_cast<int>(m_newName.width(font()));
    const int least = isNews ? std::min(wish, kLeastNewName) : std::max(wish, kLeastNewName);
    const int room = place - least - kGap;
    const int whole = fontMetrics().horizontalAdvance(note) + 1;
    if (room < (isNews ? std::min(whole, kLeastNews) : whole))
        return 0;
    const int taken = std::min(room, whole);
    const QColor ink = isNews ? colors.ink : colors.muted;
    ColouredText line;
    line.append(note, ink);
    line.elided(font(), taken, ink)
        .paint(painter,
               QStyle::visualRect(layoutDirection(), rect(),
                                  QRect(width() - taken, 0, taken, height())),
               font(), layoutDirection() == Qt::RightToLeft ? Qt::AlignLeft : Qt::AlignRight);
    return taken + kGap;
}

void SampleLine::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange)
        follow();
    if (event->type() == QEvent::FontChange)
        updateGeometry();
}
