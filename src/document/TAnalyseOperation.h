// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TFileObject.h"
#include "document/TMetadataSource.h"

#include <memory>

class TAnalyseOperation;

/// Who is told that the metadata of a file is there.
class TAnalyseMaster
{
public:
    virtual void AOpComplete(TAnalyseOperation &operation) = 0;

protected:
    ~TAnalyseMaster() = default;
};

/// The gathering of one live entry's metadata, from the moment it was added to the moment when what
/// a MetadataGatherer read of its file is handed over. Operations end in the order of the drop,
/// one after another, on the main thread; the reading itself happens elsewhere and ahead of them.
class TAnalyseOperation
{
public:
    /// The master is not owned.
    TAnalyseOperation(std::shared_ptr<TFileObject> theFile, TAnalyseMaster *myMaster);

    const std::shared_ptr<TFileObject> &theFile() const { return m_theFile; }
    TAnalyseMaster *myMaster() const { return m_myMaster; }
    /// Stores what was read in the entry and tells the master.
    void main(const TMetadataSource::Metadata &metadata);

private:
    std::shared_ptr<TFileObject> m_theFile;
    TAnalyseMaster *m_myMaster;
};
