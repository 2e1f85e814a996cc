// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/BatchReport.h"

#include "cli/JsonBatchReport.h"
#include "cli/TextBatchReport.h"

std::unique_ptr<BatchReport> BatchReport::make(Console &console)
{
    if (console.isJson())
        return std::make_unique<JsonBatchReport>(console);
    return std::make_unique<TextBatchReport>(console);
}
