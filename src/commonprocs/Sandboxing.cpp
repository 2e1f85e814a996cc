// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/Sandboxing.h"

#include "commonprocs/URLListProcessing.h"
#include "commonprocs/easyfile.h"
#include "settings/logging.h"

#include <QCoreApplication>

#include <atomic>
#include <cerrno>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr const char *kContainerVariable = "APP_SANDBOX_CONTAINER_ID";
constexpr const char *kNoticeTitle = QT_TRANSLATE_NOOP("Sandboxing", "Sandbox is ON");
constexpr const char *kNoticeText = QT_TRANSLATE_NOOP(
    "Sandboxing", "Compiled for Web but sandbox is on. Make sure to remove for release...");

std::atomic<bool> sandboxFlag = false;

} // namespace

bool amISandboxed()
{
    return qEnvironmentVariableIsSet(kContainerVariable);
}

void initSandbox()
{
    sandboxFlag = amISandboxed();
}

bool sandboxIsOn()
{
    return sandboxFlag;
}

QString sandboxNoticeTitle()
{
    return QCoreApplication::translate("Sandboxing", kNoticeTitle);
}

QString sandboxNoticeText()
{
    return QCoreApplication::translate("Sandboxing", kNoticeText);
}

QByteArray sandBoxURLtoAppScopedBookmark(const TFileURL &url)
{
    errno = 0;
    if (url.isValid() && access(url.fileSystemPath().constData(), F_OK) == 0)
        return url.absoluteString().toUtf8();
    zelError(u"sandBoxURLtoAppScopedBookmark"_s, u' ' + textForErrno(errno));
    return {};
}

TFileURL AppScopedBookmarkToURL(const QByteArray &bookmark)
{
    const TFileURL url = TFileURL::fromString(QString::fromUtf8(bookmark));
    return url.isValid() && URLisValidFile(url) ? url : TFileURL();
}

bool startSecureAcessToURL(const TFileURL &url)
{
    return url.isValid() && URLcanBeRead(url);
}

void endSecureAccessToURL(const TFileURL & /*url*/)
{
    // Access follows the folder's own permissions here; nothing is held that could be given back.
}
