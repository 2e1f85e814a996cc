// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TProgressSheetController.h"

#include "document/TErrorLog.h"

#include <QCoreApplication>

namespace {

constexpr const char *kStatus = QT_TRANSLATE_NOOP(
    "TProgressSheetController", "Processed: %ld,    Warnings: %ld,    Critical: %ld");

} // namespace

TProgressSheetController::TProgressSheetController(qint64 maxNum)
    : m_maxNum(maxNum)
{
    setStatusText(0, 0, 0);
}

bool TProgressSheetController::updateProgress(qint64 remaining, qint64 warnings, qint64 crits)
{
    if (remaining == 0)
        return false;
    m_progress = (1.0 - static_cast<double>(remaining) / static_cast<double>(m_maxNum)) * 100.0;
    setStatusText(remaining, warnings, crits);
    return true;
}

void TProgressSheetController::setStatusText(qint64 processed, qint64 warnings, qint64 crits)
{
    m_statusText =
        formatted(QCoreApplication::translate("TProgressSheetController", kStatus),
                  {QString::number(processed), QString::number(warnings), QString::number(crits)});
}
