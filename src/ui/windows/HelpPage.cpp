// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/HelpPage.h"

#include "ui/controls/Theme.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextTable>
#include <QUrl>

#include <algorithm>
#include <cmath>

namespace {

constexpr QLatin1StringView kHttps{"https"};
constexpr QLatin1StringView kLight{"-light"}; ///< at the end of pictures' names
constexpr QLatin1StringView kDark{"-dark"};
constexpr qreal kCellPadding = 5;
constexpr qreal kAboveHeading = 20;
constexpr qreal kLineHeight = 120; ///< percent
constexpr int kLeastPicture = 240;

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
        format.setBottomMargin(HelpPage::kBelowHeading);
    }
    const QTextBlock::iterator first = block.begin();
    if (first.atEnd() || !first.fragment().charFormat().isImageFormat())
        format.setLineHeight(kLineHeight, QTextBlockFormat::ProportionalHeight);
    cursor.setBlockFormat(format);
}

QList<QTextFragment> fragments(QTextDocument &document)
{
    QList<QTextFragment> found;
    forEachBlock(document, [&found](const QTextBlock &block) {
        for (auto part = block.begin(); !part.atEnd(); ++part)
            found += part.fragment();
    });
    return found;
}

void reformat(QTextDocument &document, const QTextFragment &fragment, const QTextCharFormat &format)
{
    QTextCursor cursor(&document);
    cursor.setPosition(fragment.position());
    cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
    cursor.setCharFormat(format);
}

/// Links that lead out of the manual become plain text.
void mend(QTextDocument &document, const QTextFragment &fragment, const QColor &ink)
{
    QTextCharFormat format = fragment.charFormat();
    const QUrl link(format.anchorHref());
    if (!format.isAnchor() || link.scheme() == kHttps ||
        QFile::exists(HelpPage::kFolder + link.path()))
        return;
    format.setAnchor(false);
    format.clearProperty(QTextFormat::AnchorHref);
    format.setForeground(ink);
    format.setFontUnderline(false);
    reformat(document, fragment, format);
}

/// The picture that the manual names, in the scheme of the window where there is one.
QImage picture(const QString &name, bool isDark)
{
    const QString path = QDir::cleanPath(HelpPage::kFolder + name);
    if (isDark) {
        const QImage dark(QString(path).replace(kLight, kDark));
        if (!dark.isNull())
            return dark;
    }
    return QImage(path);
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

void HelpPage::polish(QTextDocument &document, const QPalette &palette)
{
    const ThemeColors colors = ThemeColors::of(palette);
    document.setDocumentMargin(kMargin);
    forEachBlock(document, spaceOut);
    const QList<QTextFragment> all = fragments(document);
    for (const QTextFragment &fragment : all)
        mend(document, fragment, colors.ink);
    lineTables(*document.rootFrame(), colors.border);
}

void HelpPage::fitPictures(QTextDocument &document, int pageWidth, const QPalette &palette,
                           qreal ratio)
{
    const bool isDark = ThemeColors::of(palette).isDark;
    const QList<QTextFragment> all = fragments(document);
    for (const QTextFragment &fragment : all) {
        if (!fragment.charFormat().isImageFormat())
            continue;
        QTextImageFormat format = fragment.charFormat().toImageFormat();
        const QImage whole = picture(format.name(), isDark);
        const int width =
            std::clamp(pageWidth, kLeastPicture, std::max(kLeastPicture, whole.width()));
        // Scaled here, since the text would leave out pixels.
        QImage scaled = whole.scaledToWidth(static_cast<int>(std::lround(width * ratio)),
                                            Qt::SmoothTransformation);
        scaled.setDevicePixelRatio(ratio);
        document.addResource(QTextDocument::ImageResource,
                             document.baseUrl().resolved(QUrl(format.name())), scaled);
        format.setWidth(width);
        format.setHeight(scaled.height() / ratio);
        reformat(document, fragment, format);
    }
    // Otherwise the lines below, which have a new width as well, may be laid over each other.
    document.markContentsDirty(0, document.characterCount());
}
