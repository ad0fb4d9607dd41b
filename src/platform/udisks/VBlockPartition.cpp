// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/udisks/VBlockPartition.h"

#include "platform/udisks/UDisksObjectTree.h"

QString VBlockPartition::table() const
{
    const UDisksBlock* block = tree()->find(path());
    return block ? block->table : QString();
}
