// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDocumentGathering.h"
#include "platform/MainThread.h"

/// Lets documents read metadata through helper programs, each document with some of its own, which
/// give way to everything else on the machine. The door is not owned and outlives the documents.
TDocumentGatherer::Make gatherersWithHelpers(MainThread &mainThread);
