// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <atomic>
#include <memory>

/// What the progress sheet of a rename run shows, and its cancel button. Shared by the document and
/// the sheet; main thread only, but for the abort flag, which the mover reads before each move.
class TProgressSheetController
{
public:
    using AbortFlag = std::shared_ptr<std::atomic<bool>>;

    explicit TProgressSheetController(qint64 maxNum);

    /// The cancel button.
    void iWantToAbort() { m_abortRequest->store(true); }
    bool abortRequest() const { return m_abortRequest->load(); }
    const AbortFlag &abortFlag() const { return m_abortRequest; }
    qint64 maxNum() const { return m_maxNum; }
    /// 0 to 100.
    double progress() const { return m_progress; }
    const QString &statusText() const { return m_statusText; }
    /// True once the sheet is about to be ordered out.
    bool isClosing() const { return m_isClosing; }

    /// remaining is the number of files still to come, which the text shows as processed. Does
    /// nothing when it is 0; true when bar and text changed.
    bool updateProgress(qint64 remaining, qint64 warnings, qint64 crits);
    void prepareToClose() { m_isClosing = true; }

private:
    void setStatusText(qint64 processed, qint64 warnings, qint64 crits);

    qint64 m_maxNum;
    AbortFlag m_abortRequest = std::make_shared<std::atomic<bool>>(false);
    double m_progress = 0;
    QString m_statusText;
    bool m_isClosing = false;
};
