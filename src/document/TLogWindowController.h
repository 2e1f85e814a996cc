// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDialogHost.h"
#include "platform/Clock.h"
#include "platform/TResult.h"

/// The text log of a finished run, as its window shows and saves it. Shared by the document, to
/// which the window is attached, and the window. Main thread only.
class TLogWindowController
{
public:
    /// The clock is not owned and must outlive the controller.
    TLogWindowController(QString title, QString text, const Clock &clock);

    const QString &title() const { return m_title; }
    const QString &text() const { return m_text; }
    /// Asks for a place (file type "rtf") and writes the text there; says so when the disk refuses.
    /// The host must outlive its own answer.
    void save(TDialogHost &host) const;
    /// Writes the text as RTF, whole or not at all.
    static TResult<bool> writeRtf(const QString &text, const TFileURL &url);
    static QByteArray rtf(const QString &text);

private:
    QString m_title;
    QString m_text;
    const Clock &m_clock;
};
