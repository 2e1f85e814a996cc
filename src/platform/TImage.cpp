// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/TImage.h"

#include <array>

namespace {

constexpr std::array kClass{"NSImage", "NSObject"};
constexpr QLatin1StringView kNameKey{"NSName"};

} // namespace

TArchiveClass TImage::archiveClass()
{
    return kClass;
}

void TImage::encodeWithCoder(TEncoder &coder) const
{
    if (isSet())
        coder.encodeString(kNameKey, m_name);
}

void TImage::initWithCoder(const TDecoder &coder)
{
    m_name = coder.decodeString(kNameKey);
}
