// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMetaType>
#include <QStringList>

#include <memory>
#include <vector>

/// A table of texts, row by row; rows may differ in length. Shared and never changed once made, so
/// that copying a rule that holds a million cells costs nothing.
using TStringTable = std::vector<QStringList>;
using TStringTablePtr = std::shared_ptr<const TStringTable>;

/// Whoever lets go of it last does not wait until the texts of a large table are freed, which takes
/// a second for some million rows.
std::shared_ptr<TStringTable> newStringTable(TStringTable rows = {});

Q_DECLARE_METATYPE(TStringTablePtr)
