// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/table/ColumnSettings.h"

#include "settings/UserDefaults.h"
#include "ui/table/FileCells.h"
#include "ui/table/FileTableModel.h"
#include "ui/table/TableLook.h"

#include <QEvent>
#include <QScopedValueRollback>

#include <array>
#include <set>

using namespace Qt::StringLiterals;

namespace {

using Model = FileTableModel;

constexpr QLatin1StringView kKey{"fileTableColumns"};
constexpr QLatin1StringView kColumn{"column"};
constexpr QLatin1StringView kWidth{"width"};
constexpr QLatin1StringView kHidden{"hidden"};
/// What the columns are called in the settings.
constexpr std::array<QLatin1StringView, Model::ColumnCount> kNames{
    "status"_L1, "name"_L1, "newName"_L1, "size"_L1, "modified"_L1, "created"_L1, "folder"_L1};
constexpr int kStatusWidth = 36;
/// Of the room for both names, the part for the old one.
constexpr double kOldNamePart = 0.4;
constexpr int kSavingDelay = 400;
/// Room for this much of a name is worth more than all columns in sight.
constexpr QLatin1StringView kShortName{"IMG_0042 Rome.jpeg"};
/// And for this much of a new one more than all of a folder's name and the time of a date.
constexpr QLatin1StringView kUsualName{"2025-07-03 Holiday in Rome 0042.jpeg"};
/// What gives way to the names in a narrow window, first of all what matters least.
constexpr std::array kGiving{Model::Folder, Model::Created, Model::Modified};
constexpr QLatin1StringView kLongSize{"1000.0 MB"};
constexpr QLatin1StringView kLongFolder{"Holiday pictures 2"};
/// Month, day and hour have two digits.
constexpr TDate kSampleDate = TDate::fromSeconds(1'766'271'538);
constexpr QLatin1StringView kSpare{"0"}; ///< for an hour of another zone and wider figures

int columnNamed(const QString &name)
{
    const auto found = std::find(kNames.begin(), kNames.end(), name);
    return found == kNames.end() ? -1 : static_cast<int>(found - kNames.begin());
}

} // namespace

ColumnSettings::ColumnSettings(QHeaderView &header, QObject *parent)
    : QObject(parent)
    , m_header(header)
{
    m_saving.setSingleShot(true);
    connect(&m_saving, &QTimer::timeout, this, &ColumnSettings::save);
    connect(&header, &QHeaderView::sectionMoved, this, [this] { m_saving.start(kSavingDelay); });
    connect(&header, &QHeaderView::sectionResized, this, [this](int section) {
        // The last column takes up what the others leave.
        if (m_isAdjusting || m_header.visualIndex(section) == lastVisible())
            return;
        m_isFitting = false;
        m_saving.start(kSavingDelay);
    });
    showInitialColumns();
    load();
    fillMenu();
    header.installEventFilter(this);
    header.setContextMenuPolicy(Qt::CustomContextMenu);
    connect(&header, &QWidget::customContextMenuRequested, this,
            [this](QPoint position) { m_menu.popup(m_header.mapToGlobal(position)); });
}

ColumnSettings::~ColumnSettings()
{
    if (m_saving.isActive())
        save();
}

int ColumnSettings::lastVisible() const
{
    int visual = m_header.count() - 1;
    while (visual > 0 && m_header.isSectionHidden(m_header.logicalIndex(visual)))
        --visual;
    return visual;
}

int ColumnSettings::widthFor(const QString &sample) const
{
    return m_header.fontMetrics().horizontalAdvance(sample) + 2 * TableLook::kPadding + 4;
}

void ColumnSettings::showInitialColumns()
{
    const QScopedValueRollback adjusting(m_isAdjusting, true);
    for (int column = 0; column < Model::ColumnCount; ++column) {
        m_header.moveSection(m_header.visualIndex(column), column);
        m_header.setSectionHidden(column, column == Model::Created);
    }
    m_header.setSectionResizeMode(Model::Status, QHeaderView::Fixed);
    m_header.resizeSection(Model::Status, kStatusWidth);
    m_header.resizeSection(Model::Size, widthFor(kLongSize));
    for (const int column : kGiving) // also of those that are hidden now
        m_header.resizeSection(column, usualWidth(column));
    m_isFitting = true;
    fit();
}

int ColumnSettings::usualWidth(int column) const
{
    return widthFor(column == Model::Folder ? QString(kLongFolder)
                                            : FileCells::dateText(kSampleDate) + kSpare);
}

/// That still shows the title, and the day of a date.
int ColumnSettings::leastWidth(int column) const
{
    const int title = m_header.sectionSizeHint(column);
    return column == Model::Folder
               ? title
               : std::max(title, widthFor(FileCells::dayText(kSampleDate) + kSpare));
}

/// The old and the new name get what the other columns leave, and more where that is little.
void ColumnSettings::fit()
{
    if (!m_isFitting)
        return;
    const QScopedValueRollback adjusting(m_isAdjusting, true);
    int names =
        m_header.width() - m_header.sectionSize(Model::Status) - m_header.sectionSize(Model::Size);
    for (const int column : kGiving) {
        if (!m_header.isSectionHidden(column))
            names -= usualWidth(column);
    }
    const int wanted = widthFor(kShortName) + widthFor(kUsualName);
    for (const int column : kGiving) {
        if (m_header.isSectionHidden(column))
            continue;
        const int usual = usualWidth(column);
        const int least = std::min(leastWidth(column), usual);
        const int given = std::clamp(wanted - names, 0, usual - least);
        m_header.resizeSection(column, usual - given);
        names += given;
    }
    shareNames(names);
}

void ColumnSettings::shareNames(int room)
{
    const int least = widthFor(kShortName);
    if (m_header.isSectionHidden(Model::Name))
        return m_header.resizeSection(Model::NewName, std::max(least, room));
    room = std::max(2 * least, room);
    const int oldName = std::max(least, static_cast<int>(room * kOldNamePart));
    m_header.resizeSection(Model::Name, oldName);
    m_header.resizeSection(Model::NewName, room - oldName);
}

bool ColumnSettings::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize)
        fit();
    return QObject::eventFilter(watched, event);
}

void ColumnSettings::load()
{
    const QScopedValueRollback adjusting(m_isAdjusting, true);
    std::set<int> seen;
    for (const QVariant &entry : UserDefaults::valueForKey(kKey).toList()) {
        const QVariantMap settings = entry.toMap();
        const int column = columnNamed(settings.value(kColumn).toString());
        if (column < 0 || !seen.insert(column).second)
            continue;
        m_header.moveSection(m_header.visualIndex(column), static_cast<int>(seen.size()) - 1);
        const bool canHide = column != Model::NewName;
        m_header.setSectionHidden(column, canHide && settings.value(kHidden).toBool());
        const int width = settings.value(kWidth).toInt();
        if (width >= m_header.minimumSectionSize() && width <= TableLook::kMostWidth &&
            column != Model::Status) {
            m_header.resizeSection(column, width);
            m_isFitting = false;
        }
    }
}

void ColumnSettings::save()
{
    m_saving.stop();
    QVariantList columns;
    for (int visual = 0; visual < m_header.count(); ++visual) {
        const int column = m_header.logicalIndex(visual);
        QVariantMap settings{{kColumn, kNames[static_cast<std::size_t>(column)]},
                             {kHidden, m_header.isSectionHidden(column)}};
        if (!m_isFitting && !m_header.isSectionHidden(column))
            settings.insert(kWidth, m_header.sectionSize(column));
        columns += settings;
    }
    UserDefaults::setValue(kKey, columns);
}

void ColumnSettings::fillMenu()
{
    m_menu.setTitle(tr("Columns"));
    for (int column = 0; column < Model::ColumnCount; ++column) {
        QAction *action =
            m_menu.addAction(m_header.model()
                                 ->headerData(column, Qt::Horizontal, Qt::AccessibleTextRole)
                                 .toString());
        action->setCheckable(true);
        action->setEnabled(column != Model::NewName); // a table without it would show nothing
        connect(action, &QAction::triggered, this, [this, column](bool isShown) {
            {
                const QScopedValueRollback adjusting(m_isAdjusting, true);
                m_header.setSectionHidden(column, !isShown);
            }
            fit();
            m_saving.start(kSavingDelay);
        });
    }
    m_menu.addSeparator();
    QAction *arrange = m_menu.addAction(tr("Arrange by &Keyboard"));
    // Later, since a menu that closes gives the keyboard back to what had it before.
    connect(
        arrange, &QAction::triggered, &m_header,
        [this] { m_header.setFocus(Qt::ShortcutFocusReason); }, Qt::QueuedConnection);
    connect(m_menu.addAction(tr("Standard Columns")), &QAction::triggered, this, [this] {
        showInitialColumns();
        checkShown();
        save();
    });
    connect(&m_menu, &QMenu::aboutToShow, this, [this, arrange] {
        checkShown();
        arrange->setEnabled(m_header.isVisible());
    });
    checkShown();
}

void ColumnSettings::checkShown()
{
    for (int column = 0; column < Model::ColumnCount; ++column)
        m_menu.actions()[column]->setChecked(!m_header.isSectionHidden(column));
}
