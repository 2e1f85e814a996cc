// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/TMetadata.h"

#include "platform/CompactMetadata.h"

TMetadataPtr TMetadata::fromVariantMap(const QVariantMap &map)
{
    return std::make_shared<const CompactMetadata>(map);
}
