// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/RenameChunk.h"

#include "commonprocs/ByteNames.h"

void RenameEntry::setPlan(MovePlanner::Plan newPlan)
{
    plan = std::move(newPlan);
    to = plan.moves() ? ByteNames::toBytes(plan.finalName) : QByteArray();
}
