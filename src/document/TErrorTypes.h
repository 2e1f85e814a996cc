// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TErrorText.h"
#include "platform/TCoder.h"

/// One problem found for a file or a batch. Problems are data: nothing throws.
struct TErrorTypes
{
    static constexpr int kNone = 0;     ///< no problem
    static constexpr int kWarning = 1;  ///< the file can be renamed, but the user should look
    static constexpr int kCritical = 2; ///< the name is unusable

    int errClass = kNone;
    TErrorText errDesc;

    static TErrorTypes newErrorWithClass(int errClass, const TErrorText &desc);
    static TArchiveClass archiveClass();
    void encodeWithCoder(TEncoder &coder) const;
    void initWithCoder(const TDecoder &coder);

    friend bool operator==(const TErrorTypes &, const TErrorTypes &) = default;
};
