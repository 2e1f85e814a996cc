// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/MainThread.h"

#include <memory>

/// The way from a document's workers to the document: work posted here runs on the main thread in
/// order, and not at all once the document has closed its mail. Shared by both sides, so that a
/// worker may post at any time.
class TDocumentMail : public std::enable_shared_from_this<TDocumentMail>
{
public:
    /// The door is not owned and outlives every worker.
    explicit TDocumentMail(MainThread &mainThread)
        : m_mainThread(mainThread)
    {
    }

    /// Any thread.
    void post(MainThread::Work work)
    {
        m_mainThread.post([mail = shared_from_this(), work = std::move(work)] {
            if (mail->m_isOpen)
                work();
        });
    }
    /// Main thread: nothing runs from now on.
    void close() { m_isOpen = false; }
    /// Main thread: guards answers that come from elsewhere.
    bool isOpen() const { return m_isOpen; }

private:
    MainThread &m_mainThread;
    bool m_isOpen = true; ///< main thread only
};
using TDocumentMailPtr = std::shared_ptr<TDocumentMail>;
