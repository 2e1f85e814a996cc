// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TResult.h"

#include <QString>

#include <unicode/uregex.h>

#include <vector>

/// A replacement template, read as ICU reads one but before any match, so that a bad template is
/// known at once and an expansion costs no parsing. A value.
struct RegexTemplate
{
    static constexpr int32_t kNoGroup = -1;

    /// A constant text, or the text of a capture group (0: the whole match).
    struct Piece
    {
        QString literal;
        int32_t group = kNoGroup;
    };

    std::vector<Piece> pieces;

    /// References are checked against the groups of the compiled pattern.
    static TResult<RegexTemplate> parse(const QString &text, URegularExpression *expression);
};
