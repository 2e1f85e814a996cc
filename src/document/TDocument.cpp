// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TDocument.h"

#include "document/RollbackNotice.h"
#include "document/TDocumentDrop.h"
#include "document/TDocumentRenaming.h"

#include <QCoreApplication>
#include <QUuid>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kUUIDPrefix{"Doc"};
constexpr const char *kTitle = QT_TRANSLATE_NOOP("TDocument", "Tavrin 10");
constexpr const char *kIdle = QT_TRANSLATE_NOOP("TDocument", "Idle. Files: %ld");
constexpr const char *kDragMeTitle = QT_TRANSLATE_NOOP("TDocument", "Please Drag Me!");
constexpr const char *kDragMeText = QT_TRANSLATE_NOOP(
    "TDocument", "To add this name element, please drag it into the editor below.");
constexpr const char *kDragMeNote = QT_TRANSLATE_NOOP(
    "TDocument",
    "Or press Enter on a name element, or use the menu Rules > Add (Ctrl+1 to Ctrl+0).");
constexpr const char *kOk = QT_TRANSLATE_NOOP("TDocument", "OK");
constexpr QLatin1StringView kUnimplemented{"%@ is unimplemented"};
constexpr QLatin1StringView kDataOfType{"dataOfType:error:"};
constexpr QLatin1StringView kReadFromData{"readFromData:ofType:error:"};
constexpr std::size_t kFirstCapacity = 10;

[[noreturn]] void raiseUnimplemented(QLatin1StringView operation)
{
    throw TUnimplementedMethod(formatted(kUnimplemented, {operation}).toStdString());
}

} // namespace

TDocument::TDocument(TDocumentHost &host, TDocumentServices services, QObject *parent)
    : QObject(parent)
    , m_host(&host)
    , m_services(std::move(services))
    , m_mail(std::make_shared<TDocumentMail>(m_services.mainThread))
    , m_myUUID(kUUIDPrefix + QUuid::createUuid().toString(QUuid::WithoutBraces))
    , m_theExtensionHandler(std::make_unique<TExtensionHandler>())
    , m_theOptions(m_services.options)
    , m_facts(m_mail, m_sourceObjectArray)
    , m_gathering(m_mail, m_services.makeGatherer, *this)
    , m_analysis(m_services.fileManager, m_mail, analysisOutput())
{
    m_sourceObjectArray.reserve(kFirstCapacity);
    m_ruleArray.reserve(kFirstCapacity);
    subscribe(kRuleDoubleClicked, &TDocument::ruleDoubleClicked);
    subscribe(kDeleteRule, &TDocument::deleteRuleNotified);
    subscribe(kStartDupeDrag, &TDocument::startDupeDrag);
    subscribe(Notifications::kGotAuthorized, &TDocument::gotAuthorized);
    subscribe(Notifications::kRuleChanged, &TDocument::ruleChangedNotified);
    subscribe(RollbackNotice::kRolledBack, &TDocument::rolledBack);
    tell(&TDocumentHost::setWindowTitle, text(kTitle));
    tell(&TDocumentHost::setColorCodeChecked, m_colorCode);
    tell(&TDocumentHost::setRollBackEnabled, false);
    m_grants = std::make_unique<FolderGrants>(host, m_services.notifications);
    m_presets = std::make_unique<TDocumentPresets>(
        TDocumentPresets::Services{host, m_services.mainThread, m_services.worker,
                                   m_services.notifications},
        m_services.presets);
    loadPresetsFromDisk();
    idleStatus();
}

TDocument::~TDocument()
{
    // Nothing that workers have posted may reach a document that is being taken apart.
    m_mail->close();
    m_host = nullptr;
    if (m_theProgressSheet)
        m_theProgressSheet->iWantToAbort();
}

void TDocument::close()
{
    if (m_isClosing)
        return;
    m_isClosing = true;
    tell(&TDocumentHost::hideWindow);
    m_host = nullptr;
    m_subscriptions.clear();
    m_presets.reset();
    m_grants.reset();
    cancelDrops();
    m_gathering.cancel();
    cancelAnalysis();
    if (m_isRenaming)
        m_theProgressSheet->iWantToAbort();
    else
        Q_EMIT closed();
}

QByteArray TDocument::dataOfType(const QString &) const
{
    raiseUnimplemented(kDataOfType);
}

bool TDocument::readFromData(const QByteArray &, const QString &)
{
    raiseUnimplemented(kReadFromData);
}

QString TDocument::text(const char *source, std::initializer_list<QString> arguments)
{
    return formatted(QCoreApplication::translate("TDocument", source), arguments);
}

void TDocument::setStatus(const char *source, std::initializer_list<QString> arguments)
{
    tell(&TDocumentHost::setStatus, text(source, arguments));
}

void TDocument::idleStatus()
{
    setStatus(kIdle, {QString::number(m_sourceObjectArray.size())});
}

void TDocument::setReadyToGo(bool ready)
{
    if (ready == m_readyToGo)
        return;
    m_readyToGo = ready;
    Q_EMIT readyToGoChanged(ready);
}

void TDocument::subscribe(QLatin1StringView name, void (TDocument::*handler)(const QVariantMap &))
{
    m_subscriptions.push_back(m_services.notifications.subscribe(
        name, [this, handler](const QVariantMap &userInfo) { (this->*handler)(userInfo); }));
}

/// The rule of a notification that is for this document; null otherwise.
TRulePtr TDocument::ruleOfNotification(const QVariantMap &userInfo) const
{
    if (userInfo.value(kTheData).value<TDocument *>() != this)
        return {};
    return userInfo.value(Notifications::kTheModel).value<TRulePtr>();
}

void TDocument::ruleDoubleClicked(const QVariantMap &userInfo)
{
    if (const TRulePtr rule = ruleOfNotification(userInfo))
        tell(&TDocumentHost::editRule, rule, userInfo.value(kTheView));
}

void TDocument::deleteRuleNotified(const QVariantMap &userInfo)
{
    if (const TRulePtr rule = ruleOfNotification(userInfo))
        deleteRule(rule);
}

void TDocument::startDupeDrag(const QVariantMap &userInfo)
{
    if (const TRulePtr rule = ruleOfNotification(userInfo))
        tell(&TDocumentHost::startDupeDrag, rule, userInfo.value(kTheView));
}

void TDocument::gotAuthorized(const QVariantMap &)
{
    Q_EMIT foldersChanged();
}

void TDocument::ruleChangedNotified(const QVariantMap &userInfo)
{
    const auto rule = userInfo.value(Notifications::kTheModel).value<TRulePtr>();
    if (std::find(m_ruleArray.begin(), m_ruleArray.end(), rule) == m_ruleArray.end())
        return;
    batchChanged();
    Q_EMIT ruleChanged(rule);
    doBackgroundRunIfUpdate();
}

void TDocument::paletteButtonClicked()
{
    tell(&TDocumentHost::ask,
         TDialogHost::Question{TDialogHost::Form::Sheet, text(kDragMeTitle), text(kDragMeText),
                               text(kDragMeNote), QStringList(text(kOk))},
         TDialogHost::Answered());
}

void TDocument::setTheOptions(const TOptions &options)
{
    if (options == m_theOptions)
        return;
    m_theOptions = options;
    batchChanged();
    Q_EMIT optionsChanged();
    doBackgroundRunIfUpdate();
}

void TDocument::setLiveUpdate(bool liveUpdate)
{
    m_liveUpdate = liveUpdate;
    Q_EMIT optionsChanged();
    doBackgroundRunIfUpdate();
}

void TDocument::setDuplicatesAreCritical(bool critical)
{
    m_duplicatesAreCritical = critical;
    batchChanged();
    Q_EMIT optionsChanged();
    doBackgroundRunIfUpdate();
}

void TDocument::toggleColorCode()
{
    m_colorCode = !m_colorCode;
    tell(&TDocumentHost::setColorCodeChecked, m_colorCode);
    Q_EMIT optionsChanged();
    if (m_liveUpdate)
        doBackgroundRun();
}
