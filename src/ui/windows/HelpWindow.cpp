// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/HelpWindow.h"

#include "ui/windows/HelpPage.h"
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
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QUrl>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array kPages{"window.md"_L1, "regular-expressions.md"_L1};
constexpr QLatin1StringView kKeys{"Keys"};
constexpr QLatin1StringView kHttps{"https"};

constexpr int kCharacters = 140;
constexpr int kLines = 38;
constexpr int kHeadingMargin = 24; ///< beside the longest one
constexpr int kPageCharacters = 74;
constexpr int kBesidePage = 72; ///< frames, margins and the scroll bar
constexpr int kBlockNumber = RowDelegate::kInkRole + 1;

QString page(QLatin1StringView name)
{
    QFile file(HelpPage::kFolder + name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QString titleOf(QLatin1StringView name)
{
    return page(name).section(u'\n', 0, 0).sliced(2);
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
    const int page = SheetParts::widthOf(this, kPageCharacters) + kBesidePage;
    const QSize usual = SheetParts::sizeOf(this, kCharacters, kLines);
    const int most = screen()->availableGeometry().width() - kBesidePage;
    resize(std::clamp(m_headings->width() + page, usual.width(), std::max(usual.width(), most)),
           usual.height());
    connect(m_headings, &QTreeWidget::currentItemChanged, this,
            [this](const QTreeWidgetItem *current) { scrollTo(current); });
    connect(m_text, &QTextBrowser::anchorClicked, this, &HelpWindow::followLink);
    m_text->viewport()->installEventFilter(this);
    m_text->setFocus();
}

void HelpWindow::fill()
{
    QString all;
    for (const QLatin1StringView name : kPages)
        all += page(name) + u'\n';
    m_text->document()->setBaseUrl(QUrl(QString(HelpPage::kBase)));
    m_text->setMarkdown(all);
    HelpPage::polish(*m_text->document(), palette());
    m_pictureWidth = 0;
    fitPictures();
    listHeadings();
}

void HelpWindow::fitPictures()
{
    const int page = m_text->viewport()->width() - static_cast<int>(2 * HelpPage::kMargin);
    if (std::exchange(m_pictureWidth, page) != page)
        HelpPage::fitPictures(*m_text->document(), page, palette(), devicePixelRatioF());
}

void HelpWindow::keep(const QTextCursor &place, int top)
{
    m_kept = place;
    m_keptTop = top;
}

/// What is read stays in its place.
void HelpWindow::fitToPage()
{
    const QTextCursor place = std::exchange(m_kept, {});
    if (place.isNull())
        return;
    fitPictures();
    QScrollBar &bar = *m_text->verticalScrollBar();
    bar.setValue(bar.value() + m_text->cursorRect(place).top() - m_keptTop);
}

bool HelpWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize && watched == m_text->viewport() && m_kept.isNull()) {
        const QTextCursor top = m_text->cursorForPosition({});
        keep(top, m_text->cursorRect(top).top());
        // Later, when the text has its new lines.
        QMetaObject::invokeMethod(this, &HelpWindow::fitToPage, Qt::QueuedConnection);
    }
    return QDialog::eventFilter(watched, event);
}

void HelpWindow::listHeadings()
{
    m_headings->clear();
    QTreeWidgetItem *above = nullptr;
    const QTextDocument &document = *m_text->document();
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const int level = block.blockFormat().headingLevel();
        if (level < 1 || level > 2)
            continue;
        auto *item = level == 1 ? new QTreeWidgetItem(m_headings) : new QTreeWidgetItem(above);
        item->setText(0, block.text());
        item->setData(0, kBlockNumber, block.blockNumber());
        if (level == 1) {
            above = item;
            QFont bold = m_headings->font();
            bold.setBold(true);
            item->setFont(0, bold);
        }
    }
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
        static_cast<int>(block.blockNumber() == 0 ? 0 : place.top() - HelpPage::kBelowHeading));
    if (!m_kept.isNull()) // the text is about to get new lines
        keep(QTextCursor(block), m_text->cursorRect(QTextCursor(block)).top());
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
