// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/TagChooser.h"

#include "ui/editors/EditorLabel.h"
#include "ui/editors/ListFrame.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QVBoxLayout>

namespace {

constexpr int kGap = 8;
constexpr int kShownRows = 9;
constexpr QStringView kWideTag = u"Country/PrimaryLocationName";
constexpr QStringView kWideValue = u"2024:07:03 14:05:09";
constexpr int kMargins = 16;
constexpr int kMostQuoted = 30; ///< letters of the filter in the hint

} // namespace

/// Lets through what the filter field and the switch want to see.
class TagChooser::Proxy : public QSortFilterProxyModel
{
public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

    void setWanted(const QString &text, bool onlyPresent)
    {
        m_text = text;
        m_onlyPresent = onlyPresent;
        invalidateFilter();
    }

protected:
    bool filterAcceptsRow(int row, const QModelIndex &) const override
    {
        const QModelIndex tag = sourceModel()->index(row, TagListModel::kTag);
        if (!tag.flags().testFlag(Qt::ItemIsEnabled))
            return true;
        if (m_onlyPresent && !tag.data(TagListModel::kHasValueRole).toBool())
            return false;
        const QString value = tag.siblingAtColumn(TagListModel::kValue).data().toString();
        return tag.data().toString().contains(m_text, Qt::CaseInsensitive) ||
               value.contains(m_text, Qt::CaseInsensitive);
    }

private:
    QString m_text;
    bool m_onlyPresent = false;
};

TagChooser::TagChooser(QWidget *parent)
    : QWidget(parent)
    , m_model(new TagListModel(this))
    , m_proxy(new Proxy(this))
    , m_filter(new QLineEdit(this))
    , m_onlyPresent(new QCheckBox(tr("&Only tags this file has"), this))
    , m_list(new QTreeView(this))
    , m_hint(new EditorLabel({}, EditorLabel::Tone::Muted, m_list->viewport()))
    , m_remark(new EditorLabel({}, EditorLabel::Tone::Muted, this))
{
    m_proxy->setSourceModel(m_model);
    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins({});
    rows->setSpacing(kGap);
    addHead();
    addList();
    m_remark->setWordWrap(true);
    rows->addWidget(m_remark);
    setFocusProxy(m_filter);
}

TagChooser::~TagChooser() = default;

void TagChooser::addHead()
{
    m_filter->setPlaceholderText(tr("Filter tags and values"));
    m_filter->setAccessibleName(tr("Filter tags and values"));
    m_filter->setClearButtonEnabled(true);
    m_filter->installEventFilter(this);
    m_onlyPresent->setAccessibleName(tr("Only tags this file has"));
    auto *head = new QHBoxLayout;
    head->setSpacing(kGap * 2);
    head->addWidget(m_filter, 1);
    head->addWidget(m_onlyPresent);
    static_cast<QBoxLayout *>(layout())->addLayout(head);
    connect(m_filter, &QLineEdit::textChanged, this, &TagChooser::refilter);
    connect(m_onlyPresent, &QCheckBox::toggled, this, &TagChooser::refilter);
}

void TagChooser::addList()
{
    m_list->setModel(m_proxy);
    m_list->setAccessibleName(tr("Tags"));
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->header()->hide();
    const auto widthOf = [this](QStringView text) {
        return fontMetrics().horizontalAdvance(text.toString()) + kMargins;
    };
    m_list->setColumnWidth(TagListModel::kTag, widthOf(kWideTag));
    m_list->setMinimumWidth(widthOf(kWideTag) + widthOf(kWideValue) + kMargins);
    m_list->setMinimumHeight(3 * ListFrame::rowHeight(*this));
    auto *frame = new ListFrame(
        m_list, kShownRows,
        [](const QModelIndex &index) {
            return index.column() == TagListModel::kTag &&
                           index.data(TagListModel::kHasValueRole).toBool()
                       ? ListFrame::Weight::Plain
                       : ListFrame::Weight::Muted;
        },
        this);
    static_cast<QBoxLayout *>(layout())->addWidget(frame, 1);
    m_hint->setAlignment(Qt::AlignCenter);
    m_hint->setWordWrap(true);
    m_hint->setForegroundRole(QPalette::WindowText); // not that of lists, which is not muted
    m_hint->hide();
    auto *place = new QVBoxLayout(m_list->viewport());
    place->addWidget(m_hint);
    using Model = QAbstractItemModel;
    for (const auto signal : {&Model::rowsInserted, &Model::rowsRemoved})
        connect(m_proxy, signal, this, &TagChooser::sayWhatIsMissing);
    connect(m_proxy, &Model::modelReset, this, &TagChooser::sayWhatIsMissing);
    connect(m_list->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &row) {
                if (m_isShowing || !row.isValid())
                    return;
                const QString tag = m_model->tagAt(m_proxy->mapToSource(row).row());
                if (tag == m_chosen)
                    return;
                m_chosen = tag;
                Q_EMIT tagChosen(tag);
            });
}

void TagChooser::setTags(const QStringList &offered, const QString &placeholder)
{
    m_isShowing = true;
    m_model->setTags(offered, placeholder);
    m_list->setFirstColumnSpanned(0, {}, offered.isEmpty());
    m_isShowing = false;
    setChosenTag(m_chosen);
    showChosen(QAbstractItemView::PositionAtCenter);
}

void TagChooser::setChosenTag(const QString &tag)
{
    m_chosen = tag;
    m_isShowing = true;
    m_model->setChosenTag(tag);
    m_isShowing = false;
    showChosen();
}

void TagChooser::setValues(const TagListModel::ValueOf &valueOf, const QString &remark)
{
    m_isShowing = true;
    m_model->setValues(valueOf);
    m_isShowing = false;
    m_remark->setText(remark);
    m_onlyPresent->setEnabled(m_onlyPresent->isChecked() || m_model->valueCount() > 0);
    showChosen();
}

void TagChooser::refilter()
{
    m_isShowing = true;
    m_proxy->setWanted(m_filter->text(), m_onlyPresent->isChecked());
    m_isShowing = false;
    sayWhatIsMissing();
    showChosen();
}

void TagChooser::sayWhatIsMissing()
{
    m_hint->setText(missing());
    m_hint->setVisible(!m_hint->text().isEmpty());
    m_list->setAccessibleDescription(m_hint->text());
}

QString TagChooser::missing() const
{
    if (m_proxy->rowCount() > 0)
        return {};
    if (m_filter->text().isEmpty())
        return tr("The file has none of these tags.");
    QString wanted = m_filter->text();
    if (wanted.size() > kMostQuoted)
        wanted = wanted.first(kMostQuoted) + u'\u2026';
    return m_onlyPresent->isChecked() ? tr("No tag that the file has matches \"%1\".").arg(wanted)
                                      : tr("No tag matches \"%1\".").arg(wanted);
}

void TagChooser::showChosen(QAbstractItemView::ScrollHint hint)
{
    m_isShowing = true;
    const QModelIndex row = m_proxy->mapFromSource(m_model->index(m_model->rowOf(m_chosen), 0));
    m_list->selectionModel()->setCurrentIndex(row, QItemSelectionModel::ClearAndSelect |
                                                       QItemSelectionModel::Rows);
    if (row.isValid())
        m_list->scrollTo(row, hint);
    m_isShowing = false;
}

void TagChooser::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    showChosen(QAbstractItemView::PositionAtCenter);
}

/// From the filter field, the arrow keys walk through the list.
bool TagChooser::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_filter && event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (key->key() == Qt::Key_Down || key->key() == Qt::Key_Up) {
            const QModelIndex current = m_list->currentIndex();
            const int step = key->key() == Qt::Key_Down ? 1 : -1;
            const QModelIndex next =
                current.isValid() ? m_proxy->index(current.row() + step, 0) : m_proxy->index(0, 0);
            if (next.isValid() && next.flags().testFlag(Qt::ItemIsEnabled))
                m_list->setCurrentIndex(next);
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}
