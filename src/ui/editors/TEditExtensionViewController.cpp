// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/TEditExtensionViewController.h"

#include "commonprocs/RegexReplacer.h"
#include "document/TRenameOperation.h"
#include "ui/editors/ExtensionMapTable.h"

#include <algorithm>

namespace {

bool beginsWithPeriod(const QString &extension)
{
    return extension.startsWith(u'.');
}

/// An extension of the method in use brings a period of its own, which people seldom mean.
bool givesSecondPeriod(const TExtensionHandler &handler)
{
    const auto &pairs = handler.mapArray();
    switch (handler.handlingMethod()) {
    case TExtensionHandler::kReplace:
        return beginsWithPeriod(handler.replacer());
    case TExtensionHandler::kMap:
        return std::ranges::any_of(pairs, beginsWithPeriod, &TExtensionMap::target) ||
               std::ranges::any_of(pairs, beginsWithPeriod, &TExtensionMap::original);
    default:
        return false;
    }
}

} // namespace

TEditExtensionViewController::TEditExtensionViewController(const EditorContext &context)
    : m_context(context)
    , m_form(*this, tr("Extension"), [this] { m_context.document.extensionHandlerEdited(); })
    , m_sampler(new ExtensionSampler(this))
{
    m_form.setNote(tr("of every file"));
    addRows();
    m_form.addPreview();
    connect(&m_context.document, &TDocument::extensionHandlerChanged, this,
            &TEditExtensionViewController::reload);
    connect(&m_context.document, &TDocument::filesInserted, this,
            &TEditExtensionViewController::showState);
    connect(m_sampler, &ExtensionSampler::answered, this,
            &TEditExtensionViewController::showSample);
    reload();
}

TEditExtensionViewController::~TEditExtensionViewController()
{
    endEdit();
}

void TEditExtensionViewController::openEdit()
{
    m_context.document.beginExtensionEdit();
}

void TEditExtensionViewController::closeEdit()
{
    m_context.document.endExtensionEdit();
}

QUndoStack &TEditExtensionViewController::undoStack()
{
    return m_context.document.undoStack();
}

void TEditExtensionViewController::addFor(qint64 method, const EditorForm::Row &row)
{
    m_rows.push_back({method, row});
}

void TEditExtensionViewController::addRows()
{
    using Handler = TExtensionHandler;
    QComboBox *method =
        m_form.choice({{Handler::kUnchanged, tr("Leave unchanged")},
                       {Handler::kReplace, tr("Replace")},
                       {Handler::kMap, tr("Map")},
                       {Handler::kStrip, tr("Strip")},
                       {Handler::kRegEx, tr("Regular expression")}},
                      settingOf(handler(), &Handler::handlingMethod, &Handler::setHandlingMethod));
    m_form.addRow(tr("&Method"), {method});
    setFocusProxy(method);
    QComboBox *letterCase =
        m_form.choice({{Handler::kCaseAsItIs, tr("as it is")},
                       {Handler::kUpperCase, tr("CAPITALS")},
                       {Handler::kLowerCase, tr("small letters")}},
                      settingOf(handler(), &Handler::caseHandling, &Handler::setCaseHandling));
    addFor(Handler::kUnchanged, m_form.addRow(tr("&Letters"), {letterCase}));
    addFor(Handler::kReplace,
           m_form.addRow(tr("&New extension"), {m_form.text(settingOf(handler(), &Handler::replacer,
                                                                      &Handler::setReplacer))}));
    addMapRows();
    addFor(Handler::kStrip, m_form.addWide(m_form.words(tr("Files lose their extension."))));
    addRegExRows();
}

void TEditExtensionViewController::addMapRows()
{
    using Handler = TExtensionHandler;
    m_map = new ExtensionMapTable(this);
    connect(m_map, &ExtensionMapTable::edited, this, [this] {
        handler().setMapArray(m_map->pairs());
        m_form.edited();
    });
    m_form.addLoader([this] { m_map->setPairs(handler().mapArray()); });
    addFor(Handler::kMap, m_form.addWide(m_map));
    addFor(Handler::kMap, m_form.addWide(m_form.check(
                              tr("&Ignore upper and lower case"),
                              switchOf(handler(), &Handler::ignoreCase, &Handler::setIgnoreCase))));
    QComboBox *remainder = m_form.choice(
        {{0, tr("stay")}, {1, tr("become")}},
        eitherOf(handler(), &Handler::mapRemainderChoice, &Handler::setMapRemainderChoice));
    m_remainder = m_form.text(settingOf(handler(), &Handler::replacer, &Handler::setReplacer));
    EditorForm::setName(m_remainder, tr("What other extensions become"));
    addFor(Handler::kMap, m_form.addRow(tr("&Others"), {remainder, m_remainder}));
}

void TEditExtensionViewController::addRegExRows()
{
    using Handler = TExtensionHandler;
    addFor(Handler::kRegEx,
           m_form.addRow(tr("Fin&d"),
                         {m_form.text(settingOf(handler(), &Handler::regEx, &Handler::setRegEx))}));
    addFor(Handler::kRegEx,
           m_form.addRow(tr("Re&place by"), {m_form.text(settingOf(handler(), &Handler::rePattern,
                                                                   &Handler::setRePattern))}));
    QComboBox *access =
        m_form.choice({{Handler::kWholeName, tr("whole name, such as 'name.ext'")},
                       {Handler::kNameWithoutExtension, tr("name without extension")},
                       {Handler::kExtension, tr("extension")}},
                      settingOf(handler(), &Handler::regAccess, &Handler::setRegAccess));
    addFor(Handler::kRegEx, m_form.addRow(tr("&Works on"), {access}));
    m_problem = new EditorLabel({}, EditorLabel::Tone::Problem, this);
    m_problem->setWordWrap(true);
    m_form.addWide(m_problem);
    m_periodHint = new EditorLabel(tr("Extensions are written without their period."),
                                   EditorLabel::Tone::Muted, this);
    m_form.addWide(m_periodHint);
}

void TEditExtensionViewController::reload()
{
    m_form.reload();
    showState();
}

void TEditExtensionViewController::showState()
{
    const qint64 method = handler().handlingMethod();
    for (const MethodRow &each : m_rows)
        each.row.setVisible(each.method == method);
    m_remainder->setEnabled(handler().mapRemainderChoice() != 0);
    const QString problem = method == TExtensionHandler::kRegEx
                                ? RegexReplacer(handler().regEx(), handler().rePattern()).problem()
                                : QString();
    m_problem->setText(problem);
    m_problem->setVisible(!problem.isEmpty());
    m_periodHint->setVisible(givesSecondPeriod(handler()));
    askForSample();
}

/// The lines stay as they are until those that follow from the settings are known.
void TEditExtensionViewController::askForSample()
{
    m_sample = m_context.sampleFile ? m_context.sampleFile() : nullptr;
    if (m_sample)
        return m_sampler->ask(handler(), *m_sample,
                              static_cast<qint64>(m_context.document.sourceObjectArray().size()));
    m_sampler->forget();
    m_form.preview().setLines(
        {SamplePreview::note(tr("Files of the batch show here what they get."))});
}

void TEditExtensionViewController::showSample(const ExtensionSampler::Sample &sample)
{
    if (sample.tookTooLong)
        return m_form.preview().setLines(
            {SamplePreview::note(RegexReplacer::kTookTooLong.toString())});
    m_form.preview().setLines(
        {SamplePreview::change(m_sample->sourceURL().lastPathComponent(),
                               TEvaluatedName::joined(m_sample->fileName(), sample.extension))});
}
