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

Q_DECLARE_METATYPE(TStringTablePtr)
