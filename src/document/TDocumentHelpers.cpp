// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TDocumentHelpers.h"

#include "metadata/MetadataGatherer.h"

namespace {

constexpr int kNiceness = 5;

class HelperGatherer : public TDocumentGatherer
{
public:
    HelperGatherer(MainThread &mainThread, Completion completion)
        : m_gatherer(
              settings(mainThread),
              [completion = std::move(completion)](
                  qsizetype, const TMetadataSource::Metadata &metadata) { completion(metadata); })
    {
    }
    void add(std::vector<TFileItem> files) override { m_gatherer.add(std::move(files)); }

private:
    static MetadataGatherer::Settings settings(MainThread &mainThread)
    {
        MetadataGatherer::Settings settings;
        settings.mainThread = &mainThread;
        settings.niceness = kNiceness;
        return settings;
    }

    MetadataGatherer m_gatherer;
};

} // namespace

TDocumentGatherer::Make gatherersWithHelpers(MainThread &mainThread)
{
    return [&mainThread](TDocumentGatherer::Completion completion) {
        return std::make_unique<HelperGatherer>(mainThread, std::move(completion));
    };
}
