// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/inspector/FactsPane.h"

#include "commonprocs/ByteNames.h"
#include "ui/controls/SizeText.h"
#include "ui/controls/Theme.h"
#include "ui/images/Images.h"

#include <QDateTime>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QLocale>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr int kGap = 4;
constexpr int kColumnGap = 12;
constexpr double kMillion = 1e6;
constexpr const char *kTitles[] = {
    QT_TRANSLATE_NOOP("FactsPane", "Dimensions"), QT_TRANSLATE_NOOP("FactsPane", "Duration"),
    QT_TRANSLATE_NOOP("FactsPane", "Created"), QT_TRANSLATE_NOOP("FactsPane", "Modified")};

QString shown(const TDate &date)
{
    return date.isSet() ? QLocale().toString(QDateTime::fromMSecsSinceEpoch(date.milliseconds()),
                                             QLocale::ShortFormat)
                        : QString();
}

/// As the picture is seen, and how many millions of pixels it has from one million on.
QString dimensions(const TMetadata &properties)
{
    const QSize stored(properties.value(u"PixelWidth"_s).toInt(),
                       properties.value(u"PixelHeight"_s).toInt());
    if (stored.isEmpty())
        return {};
    const QSize size = Images::upright(stored, properties.value(u"Orientation"_s).toInt());
    const QString text = u"%1 × %2"_s.arg(size.width()).arg(size.height());
    const double pixels = size.width() / kMillion * size.height();
    return pixels < 1 ? text
                      : FactsPane::tr("%1 (%2 MP)").arg(text, QLocale().toString(pixels, 'f', 1));
}

/// "4:05", or "1:02:03" from an hour on.
QString duration(double seconds)
{
    if (!(seconds > 0) || seconds > 1e9)
        return {};
    const auto whole = std::llround(seconds);
    const auto twoDigits = [](qint64 number) { return u"%1"_s.arg(number, 2, 10, '0'_L1); };
    const QString tail = twoDigits(whole % 60);
    return whole < 3600
               ? u"%1:%2"_s.arg(QString::number(whole / 60), tail)
               : u"%1:%2:%3"_s.arg(QString::number(whole / 3600), twoDigits(whole / 60 % 60), tail);
}

QLabel *label(QWidget *parent)
{
    auto *const label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    return label;
}

} // namespace

FactsPane::FactsPane(QWidget *parent)
    : QWidget(parent)
    , m_name(label(this))
    , m_kind(label(this))
    , m_list(new QGridLayout)
{
    QFont bold = font();
    bold.setWeight(QFont::DemiBold);
    m_name->setFont(bold);
    m_kind->setWordWrap(true);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(kGap);
    layout->addWidget(m_name);
    layout->addWidget(m_kind);
    layout->addLayout(m_list);
    m_list->setContentsMargins(0, kGap, 0, 0);
    m_list->setVerticalSpacing(kGap);
    for (int row = 0; row < kRows; ++row) {
        m_titles[row] = new QLabel(tr(kTitles[row]), this);
        m_values[row] = new QLabel(this);
        m_values[row]->setTextFormat(Qt::PlainText);
        m_values[row]->setWordWrap(true);
        m_values[row]->setTextInteractionFlags(Qt::TextSelectableByMouse);
    }
    place(false);
    recolour();
}

void FactsPane::showFacts(const TFileItem &file, const FileReading &reading)
{
    m_fullName = ByteNames::forDisplay(file.url.lastPathComponent());
    elideName();
    QStringList kind{reading.kind};
    if (file.facts.kind == TFileStatus::Kind::File)
        kind += SizeText::of(file.facts.size);
    kind.removeAll(QString());
    m_kind->setText(kind.join(u" · "_s));
    setRow(Dimensions, reading.imageProperties ? dimensions(*reading.imageProperties) : QString());
    setRow(Duration, reading.media ? duration(reading.media->duration) : QString());
    setRow(Created, shown(file.facts.creation));
    setRow(Modified, shown(file.facts.modification));
    arrange();
}

void FactsPane::setRow(Row row, const QString &text)
{
    m_values[row]->setText(text);
    m_values[row]->setVisible(!text.isEmpty());
    m_titles[row]->setVisible(!text.isEmpty());
}

/// Titles stand above their values when one of these would have no room beside them.
void FactsPane::arrange()
{
    int titles = 0;
    int values = 0;
    for (int row = 0; row < kRows; ++row) {
        if (m_values[row]->isHidden())
            continue;
        titles = std::max(titles, m_titles[row]->sizeHint().width());
        values = std::max(values, fontMetrics().horizontalAdvance(m_values[row]->text()));
    }
    place(titles + kColumnGap + values > width());
}

void FactsPane::place(bool isStacked)
{
    if (m_isStacked == isStacked)
        return;
    m_isStacked = isStacked;
    for (int row = 0; row < kRows; ++row) {
        m_list->removeWidget(m_titles[row]);
        m_list->removeWidget(m_values[row]);
        m_list->addWidget(m_titles[row], 2 * row, 0, Qt::AlignTop);
        m_list->addWidget(m_values[row], 2 * row + (isStacked ? 1 : 0), isStacked ? 0 : 1);
    }
    m_list->setColumnStretch(0, isStacked ? 1 : 0);
    m_list->setColumnStretch(1, isStacked ? 0 : 1);
    m_list->setHorizontalSpacing(isStacked ? 0 : kColumnGap);
}

void FactsPane::elideName()
{
    m_name->setText(m_name->fontMetrics().elidedText(m_fullName, Qt::ElideMiddle, width()));
    m_name->setToolTip(m_fullName.isEmpty()
                           ? QString()
                           : Qt::convertFromPlainText(m_fullName, Qt::WhiteSpaceNormal));
}

void FactsPane::recolour()
{
    const QColor muted = ThemeColors::of(palette()).muted;
    QPalette quiet;
    quiet.setColor(QPalette::WindowText, muted);
    m_kind->setPalette(quiet);
    for (QLabel *const title : m_titles)
        title->setPalette(quiet);
}

void FactsPane::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    elideName();
    arrange();
}

void FactsPane::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        recolour();
}
