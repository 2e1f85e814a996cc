// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TAnalyseOperation.h"

TAnalyseOperation::TAnalyseOperation(std::shared_ptr<TFileObject> theFile, TAnalyseMaster *myMaster)
    : m_theFile(std::move(theFile))
    , m_myMaster(myMaster)
{
}

void TAnalyseOperation::main(const TMetadataSource::Metadata &metadata)
{
    // A kind that the file does not have leaves what the entry brought along from an archive.
    if (metadata.imageProperties)
        m_theFile->setImageProperties(metadata.imageProperties);
    if (metadata.id3)
        m_theFile->setID3(metadata.id3);
    m_myMaster->AOpComplete(*this);
}
