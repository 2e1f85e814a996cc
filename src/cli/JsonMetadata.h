// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/JsonWriter.h"

#include <QVariant>

/// Appends a value of a file's metadata: texts, numbers, booleans, lists and dictionaries as they
/// are, dates in ISO 8601, bytes in base64; null for what JSON has no form for.
void appendMetadata(JsonWriter &json, const QVariant &value);
