// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TImage.h"

#include <QString>

/// What one cell of a small table shows, free of any drawing.
struct TableCell
{
    enum class Ink { Normal, Grey, Red };

    QString text;
    TImage image;
    Ink ink = Ink::Normal;

    friend bool operator==(const TableCell &, const TableCell &) = default;
};
