// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/batch/OptionsMenu.h"

#include "document/TDocument.h"
#include "settings/UserDefaults.h"

namespace {

constexpr QLatin1StringView kKeepUnchanged{"keepUnchanged"};

} // namespace

OptionsMenu::OptionsMenu(TDocument &document, QWidget *parent)
    : QMenu(tr("Batch &Options"), parent)
    , m_document(document)
    , m_replacing(addOption(tr("Replace \":\" and \"/\" by \"_\""),
                            [](TOptions &options, bool on) { options.compliance = on ? 0 : 1; }))
    , m_leadingPeriods(
          addOption(tr("Allow Leading Periods"),
                    [](TOptions &options, bool on) { options.allowLeadingPeriod = on ? 1 : 0; }))
    , m_duplicates(addAction(tr("Duplicate Names Are Critical")))
    , m_keepUnchanged(addOption(tr("Leave Unchanged Names Alone"),
                                [](TOptions &options, bool on) { options.keepUnchanged = on; }))
    , m_useLog(addOption(tr("Use a Log"),
                         [](TOptions &options, bool on) { options.useLog = on ? 1 : 0; }))
{
    m_duplicates->setCheckable(true);
    connect(m_duplicates, &QAction::triggered, &document, &TDocument::setDuplicatesAreCritical);
    connect(m_keepUnchanged, &QAction::triggered, this,
            [](bool on) { UserDefaults::setValue(kKeepUnchanged, on); });
    connect(&document, &TDocument::optionsChanged, this, &OptionsMenu::refresh);
    refresh();
}

TOptions OptionsMenu::initialOptions()
{
    TOptions options;
    options.keepUnchanged = UserDefaults::boolForKey(kKeepUnchanged);
    return options;
}

QAction *OptionsMenu::addOption(const QString &text, void (*change)(TOptions &options, bool on))
{
    QAction *action = addAction(text);
    action->setCheckable(true);
    connect(action, &QAction::triggered, this, [this, change](bool on) {
        TOptions options = m_document.theOptions();
        change(options, on);
        m_document.setTheOptions(options);
    });
    return action;
}

void OptionsMenu::refresh()
{
    const TOptions &options = m_document.theOptions();
    m_replacing->setChecked(options.compliance == 0);
    m_leadingPeriods->setChecked(options.allowLeadingPeriod != 0);
    m_duplicates->setChecked(m_document.duplicatesAreCritical());
    m_keepUnchanged->setChecked(options.keepUnchanged);
    m_useLog->setChecked(options.useLog != 0);
}
