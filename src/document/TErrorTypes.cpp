// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TErrorTypes.h"

#include <array>

namespace {

constexpr std::array kArchiveClass{"TErrorTypes", "NSObject"};
constexpr QLatin1StringView kErrDesc{"errDesc"};
constexpr QLatin1StringView kErrClass{"errClass"};

} // namespace

TErrorTypes TErrorTypes::newErrorWithClass(int errClass, const TErrorText &desc)
{
    return {errClass, desc};
}

TArchiveClass TErrorTypes::archiveClass()
{
    return kArchiveClass;
}

void TErrorTypes::encodeWithCoder(TEncoder &coder) const
{
    coder.encodeString(kErrDesc, errDesc.toString());
    coder.encodeInteger(kErrClass, errClass);
}

void TErrorTypes::initWithCoder(const TDecoder &coder)
{
    errDesc = coder.decodeString(kErrDesc);
    errClass = static_cast<int>(coder.decodeInteger(kErrClass));
}
