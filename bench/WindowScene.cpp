// SPDX-License-Identifier: GPL-3.0-or-later
#include "WindowScene.h"

#include "document/TRuleKinds.h"
#include "settings/Preferences.h"
#include "settings/PrefsWriter.h"
#include "ui/controls/Popover.h"
#include "ui/table/FileTableView.h"
#include "ui/tiles/RecipeCard.h"
#include "ui/windows/UiSettings.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTest>
#include <QTimer>

#include <limits>

namespace {

constexpr qint64 kPatience = 60'000;
constexpr int kTick = 100;

BatchWindow *openWindow()
{
    for (QWidget *const window : QApplication::topLevelWidgets()) {
        if (auto *const batch = qobject_cast<BatchWindow *>(window); batch && batch->isVisible())
            return batch;
    }
    return nullptr;
}

} // namespace

WindowScene::WindowScene()
    : m_host(std::make_unique<ApplicationHost>())
{
    m_host->start({});
    wait([this] { return (m_window = openWindow()) != nullptr; });
    if (m_window == nullptr)
        qFatal("no window opens");
}

WindowScene::~WindowScene() = default;

void WindowScene::skipGreetings()
{
    initPrefsWriter();
    initPreferences();
    thePreferences().firstRun = false;
    WritePreferences(thePreferences());
    UiSettings::setShowsWelcome(false);
}

bool WindowScene::wait(const std::function<bool()> &condition)
{
    QElapsedTimer timer;
    timer.start();
    QTimer tick; // so that the wait ends where nothing happens any more
    tick.start(kTick);
    while (!condition()) {
        if (timer.elapsed() > kPatience)
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

void WindowScene::settle(int milliseconds)
{
    QTest::qWait(milliseconds);
}

TDocument &WindowScene::document() const
{
    return m_window->document();
}

RecipeCard &WindowScene::recipe() const
{
    return *m_window->findChild<RecipeCard *>();
}

FileTableView &WindowScene::table() const
{
    return *m_window->findChild<FileTableView *>();
}

void WindowScene::addFiles(const QStringList &paths)
{
    TFileURLs urls;
    for (const QString &path : paths)
        urls += TFileURL::fileURLWithPath(path);
    m_window->addFiles(urls);
}

bool WindowScene::isIdle() const
{
    return !document().isReceivingDrop() && document().remainingAOps() == 0 &&
           !document().isAnalysing() && !document().isRenaming();
}

bool WindowScene::waitIdle() const
{
    return wait([this] { return isIdle(); });
}

TRulePtr WindowScene::addRule(const QString &kind, const QVariantMap &settings)
{
    const TRulePtr rule = TRuleKinds::ruleForIdentifier(kind);
    rule->setProperties(settings);
    rule->updatePreview();
    document().addRules({rule}, std::numeric_limits<qsizetype>::max());
    waitIdle();
    return rule;
}

Popover *WindowScene::openEditor(const TRulePtr &rule)
{
    if (QWidget *const tile = recipe().tileOf(rule))
        QTest::mouseDClick(tile, Qt::LeftButton);
    settle();
    return popover();
}

Popover *WindowScene::openExtensionEditor()
{
    Q_EMIT recipe().extensionEditRequested();
    settle();
    return popover();
}

Popover *WindowScene::popover() const
{
    return m_window->findChild<Popover *>();
}

void WindowScene::closePopover()
{
    if (Popover *const open = popover())
        open->dismiss();
    settle();
}
