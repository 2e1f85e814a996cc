// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/TEditCSVRuleViewController.h"

#include "commonprocs/ByteNames.h"
#include "document/TDocumentDrag.h"
#include "ui/controls/ToolTip.h"
#include "ui/editors/CSVProgress.h"
#include "ui/editors/CSVSources.h"
#include "ui/editors/CSVTableModel.h"
#include "ui/editors/CSVTableView.h"
#include "ui/editors/DropHint.h"
#include "ui/editors/ListFrame.h"
#include "ui/editors/RuleSampler.h"

#include <QDragEnterEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QMimeData>
#include <QPushButton>

#include <chrono>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr int kShownRows = 7;
constexpr std::chrono::milliseconds kPatience{100};

/// The one CSV file that is dragged; empty for anything else.
QString draggedFile(const QMimeData &data)
{
    const TFileURLs urls = TDocumentDrag::fileURLs(data);
    const QString path = urls.size() == 1 ? urls.front().path() : QString();
    return path.endsWith(".csv"_L1, Qt::CaseInsensitive) ? path : QString();
}

QString shownName(const QString &path)
{
    return ByteNames::forDisplay(QFileInfo(path).fileName());
}

/// What is odd about a table that could be read.
QString remarkOn(const TCSVContents &contents)
{
    const TStringTable &rows = *contents.rows;
    using Editor = TEditCSVRuleViewController;
    switch (contents.end) {
    case TCSVParser::End::InQuotes:
        return Editor::tr("A quotation mark in row %L1 is never closed. The table ends with it.")
            .arg(rows.size());
    case TCSVParser::End::AtNul:
        return Editor::tr(
                   "Row %L1 has a NUL character. The table ends with it. Is the file UTF-16? "
                   "Then save it as UTF-8.")
            .arg(rows.size());
    case TCSVParser::End::OfText:
        break;
    }
    const bool isEmpty = rows.size() == 1 && rows.front() == QStringList{QString()};
    return isEmpty ? Editor::tr("The file is empty.") : QString();
}

} // namespace

TEditCSVRuleViewController::TEditCSVRuleViewController(const TRulePtr &rule,
                                                       const EditorContext &context)
    : TRuleViewController(rule, context)
    , m_loader(new CSVLoader(this))
    , m_model(new CSVTableModel(this))
{
    setAcceptDrops(true);
    m_patience.setSingleShot(true);
    m_patience.setInterval(kPatience);
    connect(&m_patience, &QTimer::timeout, this, &TEditCSVRuleViewController::showProgress);
    connect(m_loader, &CSVLoader::loaded, this, &TEditCSVRuleViewController::fileLoaded);
    addFileRows();
    addTable();
    addSettings();
    finish(m_choose);
}

void TEditCSVRuleViewController::addFileRows()
{
    m_choose = new QPushButton(tr("Choose &CSV..."), this);
    m_file = new EditorLabel({}, EditorLabel::Tone::Muted, this);
    m_file->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    connect(m_choose, &QPushButton::clicked, this, &TEditCSVRuleViewController::chooseFile);
    auto *file = new QWidget(this);
    auto *fileLine = new QHBoxLayout(file);
    fileLine->setContentsMargins({});
    fileLine->addWidget(m_choose);
    fileLine->addWidget(m_file, 1);
    form().addWide(file);

    m_problem = new EditorLabel({}, EditorLabel::Tone::Problem, this);
    m_problem->setWordWrap(true);
    m_problem->hide();
    form().addWide(m_problem);
}

void TEditCSVRuleViewController::addTable()
{
    m_hint = new DropHint(tr("Choose a CSV file, or drop it here.\n"
                             "The first file of the batch gets its text from the first row, "
                             "the second from the second row, and so on."),
                          this);
    form().addWide(m_hint);
    m_table = new CSVTableView(m_model, this);
    const auto weightOf = [table = m_table](const QModelIndex &cell) {
        return cell.column() == table->chosenColumn() ? ListFrame::Weight::Marked
                                                      : ListFrame::Weight::Plain;
    };
    m_tableRow = form().addWide(new ListFrame(m_table, kShownRows, weightOf, this));
    connect(m_table, &CSVTableView::columnChosen, this, [this](int column) {
        if (rule().useColumn() == column)
            return;
        rule().setUseColumn(column);
        form().edited();
        form().reload();
    });
}

void TEditCSVRuleViewController::addSettings()
{
    constexpr qint64 kHighest = std::numeric_limits<qint64>::max();
    // People count from 1.
    NumberField *column =
        form().number({[this] { return std::min(rule().useColumn(), kHighest - 1) + 1; },
                       [this](qint64 number) { rule().setUseColumn(number - 1); }},
                      {1, kHighest});
    column->setAcceptDrops(false);
    m_columnRemark = form().words({});
    m_columnRow = form().addRow(tr("Co&lumn"), {column, m_columnRemark});
    form().addWide(form().check(tr("The first row &is a header"),
                                settingOf(rule(), &TCSVRule::skipFirst, &TCSVRule::setSkipFirst)));
    form().addWide(form().check(tr("&Start again at the top after the last row"),
                                settingOf(rule(), &TCSVRule::wrap, &TCSVRule::setWrap)));
    form().addWide(
        form().check(tr("Take &quotation marks off"),
                     settingOf(rule(), &TCSVRule::trimQuotes, &TCSVRule::setTrimQuotes)));
    QLineEdit *defaultText =
        form().text(settingOf(rule(), &TCSVRule::defaultText, &TCSVRule::setDefaultText));
    defaultText->setAcceptDrops(false);
    defaultText->setPlaceholderText(tr("nothing"));
    form().addRow(tr("&Without a cell"), {defaultText});
}

void TEditCSVRuleViewController::refresh()
{
    const TStringTablePtr &table = rule().theRows();
    if (m_model->table() != table) {
        const auto source = CSVSources::sourceOf(table);
        m_model->setTable(table, source ? source->columns : CSVTableModel::columnsOf(table));
    }
    m_model->setHasHeader(rule().skipFirst());
    m_model->setTrimsQuotes(rule().trimQuotes());
    m_table->setChosenColumn(rule().useColumn());
    m_hint->setVisible(!table);
    m_tableRow.setVisible(table != nullptr);
    m_columnRemark->setText(columnRemark());
    form().setNote(tableSummary());
    showSource();
}

void TEditCSVRuleViewController::showSource()
{
    const TStringTablePtr &table = rule().theRows();
    const auto source = CSVSources::sourceOf(table);
    m_file->setToolTip(source ? ToolTip::of(source->path) : QString());
    if (!m_loading.isEmpty())
        m_file->setText(tr("Reading %1...").arg(shownName(m_loading)));
    else if (source)
        m_file->setText(
            tr("%1, %2").arg(shownName(source->path), TCSVStream::nameOf(source->encoding)));
    else
        m_file->setText(table ? tr("The table came with the rule.") : tr("No file is loaded."));
}

QString TEditCSVRuleViewController::tableSummary() const
{
    if (!rule().theRows())
        return {};
    const int rows = m_model->tableRows();
    return rows == 1 ? tr("1 row") : tr("%L1 rows").arg(rows);
}

QString TEditCSVRuleViewController::columnRemark() const
{
    const int columns = m_model->columnCount();
    if (!rule().theRows())
        return {};
    return rule().useColumn() < columns ? tr("of %L1").arg(columns)
                                        : tr("The table has only %L1.").arg(columns);
}

QList<SamplePreview::Line> TEditCSVRuleViewController::previewLines() const
{
    const std::shared_ptr<TFileObject> sample = sampleFile();
    const TRulePtr copy = sample ? RuleSampler::preparedCopy(theRule()) : nullptr;
    if (!copy)
        return TRuleViewController::previewLines();
    const qsizetype row = RuleSampler::rowOf(context().document, *sample);
    static_cast<TCSVRule &>(*copy).setGlobalCounter(static_cast<quint64>(row));
    return {SamplePreview::change(sample->sourceURL().lastPathComponent(),
                                  RuleSampler::fragment(context().document, *copy, *sample))};
}

void TEditCSVRuleViewController::chooseFile()
{
    if (m_panel != nullptr)
        return;
    m_panel = new QFileDialog(this, tr("Choose CSV"));
    m_panel->setAttribute(Qt::WA_DeleteOnClose);
    m_panel->setWindowModality(Qt::WindowModal);
    m_panel->setFileMode(QFileDialog::ExistingFile);
    m_panel->setNameFilter(tr("CSV files") + " (*.csv *.CSV)"_L1);
    m_panel->setLabelText(QFileDialog::Accept, tr("Choose CSV"));
    if (const auto source = CSVSources::sourceOf(rule().theRows()))
        m_panel->setDirectory(QFileInfo(source->path).path());
    connect(m_panel, &QFileDialog::fileSelected, this, &TEditCSVRuleViewController::loadFile);
    m_panel->open();
}

void TEditCSVRuleViewController::loadFile(const QString &path)
{
    m_problem->hide();
    m_loader->load(path);
    showLoading(path);
}

void TEditCSVRuleViewController::showLoading(const QString &path)
{
    m_loading = path;
    if (path.isEmpty())
        m_patience.stop();
    else
        m_patience.start();
    if (m_progress) {
        m_progress->hide(); // gives the window the keyboard back
        m_progress->deleteLater();
    }
    showSource();
}

void TEditCSVRuleViewController::showProgress()
{
    m_progress = new CSVProgress(shownName(m_loading), this);
    connect(m_loader, &CSVLoader::progressed, m_progress, &CSVProgress::setValue);
    connect(m_progress, &QDialog::rejected, this, [this] {
        m_loader->cancel();
        showLoading({});
    });
    m_progress->open();
}

void TEditCSVRuleViewController::fileLoaded(const CSVLoader::Result &result)
{
    showLoading({});
    if (result.contents.rows) {
        CSVSources::remember(result.contents.rows,
                             {result.path, result.contents.encoding, result.columns});
        m_model->setTable(result.contents.rows, result.columns);
        rule().setTheRows(result.contents.rows);
        const QString remark = remarkOn(result.contents);
        m_problem->setText(tr("%1: %2").arg(shownName(result.path), remark));
        m_problem->setVisible(!remark.isEmpty());
    } else {
        tellFailure(result.path, result.contents.problem);
    }
    form().edited();
}

void TEditCSVRuleViewController::tellFailure(const QString &path, const QString &problem)
{
    const QString what = tr("%1: %2").arg(shownName(path), problem);
    m_problem->setText(what);
    m_problem->show();
    context().dialogs.ask(
        {TDialogHost::Form::StopSheet,
         tr("No CSV Data"),
         tr("I was unable to read CSV data from the file you fed me. Please try again"),
         what,
         {}});
}

void TEditCSVRuleViewController::dragEnterEvent(QDragEnterEvent *event)
{
    if (draggedFile(*event->mimeData()).isEmpty())
        return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
    m_hint->setLit(true);
}

void TEditCSVRuleViewController::dragLeaveEvent(QDragLeaveEvent *)
{
    m_hint->setLit(false);
}

void TEditCSVRuleViewController::dropEvent(QDropEvent *event)
{
    m_hint->setLit(false);
    const QString path = draggedFile(*event->mimeData());
    if (path.isEmpty())
        return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
    loadFile(path);
}
