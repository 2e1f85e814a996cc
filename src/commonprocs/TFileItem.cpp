// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/TFileItem.h"

TFileFacts TFileFacts::fromStatus(const TFileStatus &status)
{
    TFileFacts facts;
    facts.device = status.device;
    facts.inode = status.inode;
    facts.size = status.size;
    facts.hasBirthTime = status.birth.isSet();
    facts.creation = facts.hasBirthTime ? status.birth : status.modification;
    facts.modification = status.modification;
    facts.links = status.links;
    facts.kind = status.kind;
    facts.areWhole = status.isWhole;
    return facts;
}
