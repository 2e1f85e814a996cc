// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/FolderGrants.h"

#include "commonprocs/URLListProcessing.h"
#include "document/TErrorLog.h"

#include <QCoreApplication>

namespace {

constexpr const char *kPrompt = QT_TRANSLATE_NOOP("FolderGrants", "Grant access to %@");

bool isSameFolder(const TFileURL &chosen, const TFileURL &wanted)
{
    try {
        return isSameFileURL(chosen, wanted);
    } catch (const ResouceUnavailableException &) {
        return false; // one of them is gone
    }
}

} // namespace

QString nameOfFolder(const TFileURL &folder)
{
    const QString &name = folder.lastPathComponent();
    return name.isEmpty() ? folder.path() : name;
}

FolderGrants::FolderGrants(TDialogHost &host, Notifications &notifications)
    : m_host(host)
    , m_notifications(notifications)
{
}

void FolderGrants::getAuthorization(TFolderAccessList &list, Finished finished)
{
    const TFolderAccess *const first = list.firstInaccessible();
    if (first == nullptr) {
        finished(true);
        return;
    }
    show(list, first->theURL(),
         [this, &list, finished](TFolderAccess &folder, const std::optional<TFileURL> &chosen) {
             if (!chosen) {
                 finished(false);
                 return;
             }
             record(folder, *chosen);
             getAuthorization(list, finished);
         });
}

void FolderGrants::ask(TFolderAccessList &list, const TFileURL &folder, Finished finished)
{
    show(list, folder,
         [this, finished](TFolderAccess &access, const std::optional<TFileURL> &chosen) {
             finished(chosen && record(access, *chosen));
         });
}

/// The list may have grown by the time of the answer, so the record is looked up again then.
void FolderGrants::show(TFolderAccessList &list, const TFileURL &folder, Answered answered)
{
    const QString prompt =
        formatted(QCoreApplication::translate("FolderGrants", kPrompt), {nameOfFolder(folder)});
    m_host.chooseFolder({prompt, folder}, [alive = std::weak_ptr(m_alive), &list, folder,
                                           answered](const std::optional<TFileURL> &chosen) {
        if (alive.expired())
            return;
        if (TFolderAccess *const access = list.recordFor(folder))
            answered(*access, chosen);
    });
}

bool FolderGrants::record(TFolderAccess &folder, const TFileURL &chosen)
{
    if (!isSameFolder(chosen, folder.theURL()))
        return false;
    folder.gotAuthorized(chosen);
    m_notifications.post(Notifications::kGotAuthorized,
                         {{kTheFolderAccess, QVariant::fromValue(folder)}});
    return true;
}
