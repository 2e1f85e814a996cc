// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/TFileURL.h"

#include <QByteArray>

/// Whether the program runs in a sandbox, and how a granted folder is remembered from one start to
/// the next. Outside a sandbox every folder counts as granted.

/// True when the environment holds "APP_SANDBOX_CONTAINER_ID".
bool amISandboxed();
/// Sets the process-wide flag from the environment; done once at start.
void initSandbox();
/// The flag that initSandbox set.
bool sandboxIsOn();
/// Heading and text of the notice that a start inside a sandbox shows.
QString sandboxNoticeTitle();
QString sandboxNoticeText();

/// Data from which the folder can be found again; empty, and logged, when it cannot be reached.
QByteArray sandBoxURLtoAppScopedBookmark(const TFileURL &url);
/// The folder of a bookmark; invalid for empty data or when it is gone.
TFileURL AppScopedBookmarkToURL(const QByteArray &bookmark);
/// Opens and closes a granted folder for use. False when it cannot be used.
bool startSecureAcessToURL(const TFileURL &url);
void endSecureAccessToURL(const TFileURL &url);
