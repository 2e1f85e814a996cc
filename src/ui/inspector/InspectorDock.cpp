// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/inspector/InspectorDock.h"

#include "metadata/HelperProcess.h"
#include "ui/controls/Card.h"
#include "ui/controls/Icons.h"
#include "ui/inspector/DockTitle.h"
#include "ui/inspector/FactsPane.h"
#include "ui/inspector/InspectorReader.h"
#include "ui/inspector/PicturePane.h"
#include "ui/inspector/TagTree.h"

#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;
using Sort = FileReading::Sort;

namespace {

constexpr int kMargin = 12;
constexpr int kGap = 12;
constexpr int kLeastLetters = 32;
constexpr int kMostOfScreen = 4; ///< of its width, one part in so many
constexpr int kMostOfWindow = 4;
constexpr int kTreeMargin = 4;

/// All of the dock scrolls where it would be squeezed, in a large font or a low window. In a narrow
/// window it is content with less than it likes, because the files need the room.
class InspectorArea : public QScrollArea
{
public:
    using QScrollArea::QScrollArea;

    QSize sizeHint() const override
    {
        const QSize wanted = QScrollArea::sizeHint();
        const int room = std::max(minimumWidth(), window()->width() / kMostOfWindow);
        return {std::min(wanted.width(), room), wanted.height()};
    }
};

QLatin1StringView ruleKindOf(Sort sort)
{
    switch (sort) {
    case Sort::Image:
        return "ImageTag"_L1;
    case Sort::Audio:
        return "AudioTag"_L1;
    case Sort::Video:
        return "VideoTag"_L1;
    case Sort::Other:
        break;
    }
    return "Original"_L1;
}

} // namespace

class InspectorDock::Private
{
public:
    explicit Private(InspectorDock &dock);

    void setFile(const std::shared_ptr<TFileObject> &file);
    /// Takes up what the file entry has got since.
    void refresh();
    /// Asks about the file when somebody sees the answer.
    void visibilityChanged();

private:
    void ask();
    void take(const FileReading &reading);
    bool takeGathered();
    void show();
    void showPicture();
    std::vector<TagGroup> groups() const;
    QString emptyText() const;

    InspectorDock &m_dock;
    PicturePane *m_picture;
    FactsPane *m_facts;
    QLineEdit *m_filter;
    TagTree *m_tree;
    QLabel *m_hint;
    std::shared_ptr<TFileObject> m_file;
    TFileURL m_url; ///< of the file when it was asked about
    FileReading m_reading;
    bool m_isAsked = false;
    std::unique_ptr<InspectorReader> m_reader; ///< null until the dock is first seen
};

InspectorDock::Private::Private(InspectorDock &dock)
    : m_dock(dock)
{
    dock.setTitleBarWidget(new DockTitle(dock)); // first, also for the keyboard
    auto *const area = new InspectorArea(&dock);
    auto *const content = new QWidget(area);
    m_picture = new PicturePane(content);
    m_facts = new FactsPane(content);
    m_filter = new QLineEdit(content);
    auto *const card = new Card(content);
    m_tree = new TagTree(card);
    m_hint = new QLabel(tr("Drag a tag into the recipe, double-click it or press Enter."), content);

    m_filter->setPlaceholderText(tr("Search tags"));
    m_filter->setAccessibleName(tr("Search tags"));
    m_filter->setClearButtonEnabled(true);
    m_filter->addAction(Icons::icon("search"_L1), QLineEdit::LeadingPosition);
    auto *const cardLayout = new QVBoxLayout(card);
    cardLayout->setContentsMargins(kTreeMargin, kTreeMargin, kTreeMargin, kTreeMargin);
    cardLayout->addWidget(m_tree);
    card->showFocusOf(m_tree);
    auto *const layout = new QVBoxLayout(content);
    layout->setContentsMargins(kMargin, 0, kMargin, kMargin);
    layout->setSpacing(kGap);
    layout->addWidget(m_picture);
    layout->addWidget(m_facts);
    layout->addWidget(m_filter);
    layout->addWidget(card, 1);
    layout->addWidget(m_hint);
    m_hint->setWordWrap(true);
    m_hint->setForegroundRole(QPalette::PlaceholderText);
    area->setWidget(content);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFocusPolicy(Qt::NoFocus);
    for (QWidget *clear : {area->viewport(), content})
        clear->setAutoFillBackground(false); // the window's own ground shows
    const int least = std::min(kLeastLetters * content->fontMetrics().averageCharWidth(),
                               dock.screen()->availableGeometry().width() / kMostOfScreen);
    content->setMinimumWidth(least);
    area->setMinimumWidth(least + area->verticalScrollBar()->sizeHint().width());
    dock.setWidget(area);

    connect(m_filter, &QLineEdit::textChanged, m_tree, &TagTree::setFilter);
    connect(m_tree, &TagTree::addRequested, &dock, &InspectorDock::addRuleRequested);
    show();
}

void InspectorDock::Private::setFile(const std::shared_ptr<TFileObject> &file)
{
    if (file == m_file)
        return refresh();
    m_file = file;
    m_reading = {};
    m_isAsked = false;
    if (m_reader)
        m_reader->forget();
    ask();
}

void InspectorDock::Private::refresh()
{
    if (!m_file || !m_dock.isVisible())
        return;
    const bool wasRenamed = !(m_file->sourceURL() == m_url);
    if (wasRenamed)
        ask();
    else if (takeGathered())
        show();
}

void InspectorDock::Private::visibilityChanged()
{
    if (m_dock.isVisible() && !m_isAsked)
        ask();
    else if (!m_dock.isVisible() && m_reader && !m_reading.isWhole) {
        m_reader->forget();
        m_isAsked = false;
    }
}

void InspectorDock::Private::ask()
{
    if (!m_dock.isVisible())
        return;
    m_isAsked = true;
    m_reading.isWhole = !m_file;
    if (m_file) {
        m_url = m_file->sourceURL();
        takeGathered();
        if (!m_reader) {
            m_reader = std::make_unique<InspectorReader>(standardMetadataHelper(),
                                                         ThumbnailCache::standard());
            connect(m_reader.get(), &InspectorReader::answered, &m_dock,
                    [this](const FileReading &reading) { take(reading); });
        }
        m_reader->ask({m_file->item(), ThumbnailCache::edgeFor(m_picture->edge()),
                       m_reading.imageProperties == nullptr});
    }
    show();
}

/// Keeps what is known already where the answer has nothing.
void InspectorDock::Private::take(const FileReading &reading)
{
    const FileReading before = std::exchange(m_reading, reading);
    if (!m_reading.imageProperties)
        m_reading.imageProperties = before.imageProperties;
    if (!m_reading.tags)
        m_reading.tags = before.tags;
    takeGathered();
    show();
}

/// What the batch gathered for the rules goes before what was read here. True when it is new.
bool InspectorDock::Private::takeGathered()
{
    bool isNew = false;
    const auto use = [&isNew](TMetadataPtr &shown, const TMetadataPtr &gathered) {
        if (!gathered || gathered == shown)
            return;
        shown = gathered;
        isNew = true;
    };
    use(m_reading.imageProperties, m_file->imageProperties());
    use(m_reading.tags, m_file->ID3());
    return isNew;
}

void InspectorDock::Private::show()
{
    std::vector<TagGroup> shown = groups();
    if (m_file)
        m_facts->showFacts(m_file->item(), m_reading);
    m_facts->setVisible(m_file != nullptr);
    m_filter->setEnabled(!shown.empty() || !m_filter->text().isEmpty());
    m_hint->setVisible(!shown.empty());
    m_tree->setFocusPolicy(shown.empty() ? Qt::NoFocus : Qt::StrongFocus);
    m_tree->setEmptyText(emptyText());
    m_tree->setGroups(std::move(shown));
    showPicture();
}

void InspectorDock::Private::showPicture()
{
    if (!m_file)
        m_picture->showDrawing("inspector"_L1, false);
    else if (m_reading.picture.isNull())
        m_picture->showDrawing(Icons::forIdentifier(ruleKindOf(m_reading.sort)),
                               !m_reading.isWhole);
    else
        m_picture->showPicture(m_reading.picture);
}

std::vector<TagGroup> InspectorDock::Private::groups() const
{
    std::vector<TagGroup> groups;
    if (m_reading.imageProperties)
        groups = TagGroups::ofImage(*m_reading.imageProperties);
    if (m_reading.tags && !m_reading.tags->isEmpty())
        groups.push_back(TagGroups::ofMedia(*m_reading.tags, ruleKindOf(m_reading.sort)));
    if (m_reading.media) {
        for (TagGroup &group : TagGroups::stored(*m_reading.media))
            groups.push_back(std::move(group));
    }
    return groups;
}

QString InspectorDock::Private::emptyText() const
{
    if (!m_file)
        return tr("Select a file to see its metadata.");
    if (!m_reading.isWhole)
        return {};
    return m_reading.problem.isEmpty() ? tr("This file has no metadata.") : m_reading.problem;
}

InspectorDock::InspectorDock(QWidget *parent)
    : QDockWidget(tr("Metadata"), parent)
    , m_private(std::make_unique<Private>(*this))
{
    setObjectName(u"inspector"_s);
    setAllowedAreas(Qt::LeftDockWidgetArea | Qt::RightDockWidgetArea);
    connect(this, &QDockWidget::visibilityChanged, this,
            [this] { m_private->visibilityChanged(); });
}

InspectorDock::~InspectorDock() = default;

void InspectorDock::setFile(const std::shared_ptr<TFileObject> &file)
{
    m_private->setFile(file);
}

void InspectorDock::refresh()
{
    m_private->refresh();
}
