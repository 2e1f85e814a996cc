// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/HelpWindow.h"

#include "ui/controls/Theme.h"
#include "ui/windows/RowDelegate.h"
#include "ui/windows/SheetParts.h"

#include <QAbstractTextDocumentLayout>
#include <QDesktopServices>
#include <QEvent>
#include <QFile>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QScreen>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextTable>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QUrl>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kFolder{":/help/manual/"};
constexpr QLatin1StringView kBase{"qrc:/help/manual/"};
constexpr std::array kPages{"window.md"_L1, "regular-expressions.md"_L1};
constexpr QLatin1StringView kKeys{"Keys"};
constexpr QLatin1StringView kHttps{"https"};

constexpr int kCharacters = 140;
constexpr int kLines = 38;
constexpr int kHeadingMargin = 24; ///< beside the longest one
constexpr qreal kPageMargin = 20;
constexpr qreal kCellPadding = 5;
constexpr qreal kAboveHeading = 20;
constexpr qreal kBelowHeading = 6;
constexpr qreal kLineHeight = 120; ///< percent
constexpr qreal kPictureWidth = 520;
constexpr int kBesidePage = 72; ///< frames, margins and the scroll bar
constexpr int kBlockNumber = RowDelegate::kInkRole + 1;

QString page(QLatin1StringView name)
{
    QFile file(kFolder + name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QString titleOf(QLatin1StringView name)
{
    return page(name).section(u'\n', 0, 0).sliced(2);
}

template <typename Change>
void forEachBlock(QTextDocument &document, Change change)
{
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
        change(block);
}

void spaceOut(const QTextBlock &block)
{
    QTextCursor cursor(block);
    QTextBlockFormat format = block.blockFormat();
    if (format.headingLevel() > 0) {
        format.setTopMargin(block.blockNumber() == 0 ? 0 : kAboveHeading);
        format.setBottomMargin(kBelowHeading);
    }
    format.setLineHeight(kLineHeight, QTextBlockFormat::ProportionalHeight);
    cursor.setBlockFormat(format);
}

/// Pictures get the width of the page, and links that lead out of the manual become plain text.
void mend(QTextDocument &document, const QTextFragment &fragment, const QColor &ink)
{
    QTextCharFormat format = fragment.charFormat();
    const QUrl link(format.anchorHref());
    const bool isDead =
        format.isAnchor() && link.scheme() != kHttps && !QFile::exists(kFolder + link.path());
    if (!isDead && !format.isImageFormat())
        return;
    if (format.isImageFormat()) {
        QTextImageFormat image = format.toImageFormat();
        image.setWidth(kPictureWidth);
        format = image;
    } else {
        format.setAnchor(false);
        format.clearProperty(QTextFormat::AnchorHref);
        format.setForeground(ink);
        format.setFontUnderline(false);
    }
    QTextCursor cursor(&document);
    cursor.setPosition(fragment.position());
    cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
    cursor.setCharFormat(format);
}

void lineTables(const QTextFrame &frame, const QColor &line)
{
    const QList<QTextFrame *> children = frame.childFrames();
    for (QTextFrame *child : children) {
        auto *table = qobject_cast<QTextTable *>(child);
        if (table == nullptr)
            continue;
        QTextTableFormat format = table->format();
        format.setBorder(1);
        format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
        format.setBorderBrush(line);
        format.setBorderCollapse(true);
        format.setCellSpacing(0);
        format.setCellPadding(kCellPadding);
        table->setFormat(format);
    }
}

} // namespace

HelpWindow::HelpWindow(QWidget *parent)
    : QDialog(parent)
    , m_headings(new QTreeWidget(this))
    , m_text(new QTextBrowser(this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowFlag(Qt::WindowMinMaxButtonsHint);
    setWindowTitle(tr("Tavrin Help"));
    m_headings->setHeaderHidden(true);
    m_headings->header()->setStretchLastSection(false);
    m_headings->setRootIsDecorated(false);
    m_headings->setItemsExpandable(false);
    m_headings->setFrameShape(QFrame::NoFrame);
    m_headings->setItemDelegate(new RowDelegate(m_headings));
    m_headings->setAccessibleName(tr("Headings"));
    m_text->setFrameShape(QFrame::NoFrame);
    m_text->setOpenLinks(false);
    m_text->setAccessibleName(tr("Help"));
    auto *layout = new QHBoxLayout(this);
    layout->addWidget(SheetParts::framed(m_headings, this));
    layout->addWidget(SheetParts::framed(m_text, this), 1);
    fill();
    const int page = static_cast<int>(kPictureWidth + 2 * kPageMargin) + kBesidePage;
    const QSize usual = SheetParts::sizeOf(this, kCharacters, kLines);
    const int most = screen()->availableGeometry().width() - kBesidePage;
    resize(std::clamp(m_headings->width() + page, usual.width(), std::max(usual.width(), most)),
           usual.height());
    connect(m_headings, &QTreeWidget::currentItemChanged, this,
            [this](const QTreeWidgetItem *current) { scrollTo(current); });
    connect(m_text, &QTextBrowser::anchorClicked, this, &HelpWindow::followLink);
    m_text->setFocus();
}

void HelpWindow::fill()
{
    QString all;
    for (const QLatin1StringView name : kPages)
        all += page(name) + u'\n';
    m_text->document()->setBaseUrl(QUrl(QString(kBase)));
    m_text->setMarkdown(all);
    polish();
    listHeadings();
}

void HelpWindow::polish()
{
    const ThemeColors colors = ThemeColors::of(palette());
    QTextDocument &document = *m_text->document();
    document.setDocumentMargin(kPageMargin);
    forEachBlock(document, spaceOut);
    QList<QTextFragment> fragments;
    forEachBlock(document, [&fragments](const QTextBlock &block) {
        for (auto part = block.begin(); !part.atEnd(); ++part)
            fragments += part.fragment();
    });
    for (const QTextFragment &fragment : std::as_const(fragments))
        mend(document, fragment, colors.ink);
    lineTables(*document.rootFrame(), colors.border);
}

void HelpWindow::listHeadings()
{
    m_headings->clear();
    QTreeWidgetItem *above = nullptr;
    forEachBlock(*m_text->document(), [this, &above](const QTextBlock &block) {
        const int level = block.blockFormat().headingLevel();
        if (level < 1 || level > 2)
            return;
        auto *item = level == 1 ? new QTreeWidgetItem(m_headings) : new QTreeWidgetItem(above);
        item->setText(0, block.text());
        item->setData(0, kBlockNumber, block.blockNumber());
        if (level == 1) {
            above = item;
            QFont bold = m_headings->font();
            bold.setBold(true);
            item->setFont(0, bold);
        }
    });
    m_headings->expandAll();
    m_headings->resizeColumnToContents(0);
    m_headings->setColumnWidth(0, m_headings->columnWidth(0) + kHeadingMargin);
    m_headings->setFixedWidth(m_headings->columnWidth(0));
}

QTreeWidgetItem *HelpWindow::heading(const QString &text) const
{
    for (QTreeWidgetItemIterator item(m_headings); *item != nullptr; ++item) {
        if ((*item)->text(0) == text)
            return *item;
    }
    return m_headings->topLevelItem(0);
}

void HelpWindow::turnTo(Topic topic)
{
    const QString text = topic == Topic::Keys                 ? QString(kKeys)
                         : topic == Topic::RegularExpressions ? titleOf(kPages[1])
                                                              : titleOf(kPages[0]);
    m_headings->setCurrentItem(heading(text));
    scrollTo(m_headings->currentItem());
}

void HelpWindow::scrollTo(const QTreeWidgetItem *heading)
{
    if (heading == nullptr)
        return;
    const QTextDocument &document = *m_text->document();
    const QTextBlock block = document.findBlockByNumber(heading->data(0, kBlockNumber).toInt());
    (void)document.documentLayout()->documentSize(); // lays out all of it, not only what is seen
    const QRectF place = document.documentLayout()->blockBoundingRect(block);
    m_text->verticalScrollBar()->setValue(
        static_cast<int>(block.blockNumber() == 0 ? 0 : place.top() - kBelowHeading));
}

void HelpWindow::followLink(const QUrl &link)
{
    if (link.scheme() == kHttps)
        QDesktopServices::openUrl(link);
    for (const QLatin1StringView name : kPages) {
        if (link.fileName() == name)
            m_headings->setCurrentItem(heading(titleOf(name)));
    }
}

void HelpWindow::changeEvent(QEvent *event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_text != nullptr)
        fill(); // its colours stand in the text
}
