// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TMetadata.h"

#include <QtGlobal>

/// Where the metadata of the files of a run comes from. Called by the evaluating thread, in list
/// order; may wait.
class TMetadataSource
{
public:
    struct Metadata
    {
        TMetadataPtr imageProperties; ///< null: not read
        TMetadataPtr id3;             ///< null: not read
    };

    TMetadataSource() = default;
    TMetadataSource(const TMetadataSource &) = delete;
    TMetadataSource &operator=(const TMetadataSource &) = delete;
    virtual ~TMetadataSource() = default;
    virtual Metadata metadataForFile(qsizetype index) = 0;
};
