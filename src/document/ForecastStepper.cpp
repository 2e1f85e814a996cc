// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/ForecastStepper.h"

#include "commonprocs/easyfile.h"

ForecastStepper::ForecastStepper(FileManager &fileManager, Settings settings)
    : m_settings(std::move(settings))
    , m_planner(fileManager)
{
}

void ForecastStepper::announce(const TFileItem &item)
{
    m_planner.folders().announce(item.url.folder());
}

ForecastStepper::Forecast ForecastStepper::step(const TFileItem &item,
                                                const TMetadataSource::Metadata &metadata)
{
    m_file.assign(item, metadata.imageProperties, metadata.id3);
    TEvaluatedName name =
        TRenameOperation::evaluate(m_settings.rules, *m_settings.extensionHandler, m_file,
                                   m_index++, m_settings.batchSize, m_settings.options);
    MovePlanner::Plan plan = m_planner.plan(item, name, m_settings.options);
    const int error = plan.moves() ? m_planner.folders().errorOfChanging(*item.url.folder()) : 0;
    if (error != 0) {
        m_planner.takeBack(item, plan);
        plan.refusal = textForErrno(error);
    }
    return {plan.finalName, plan.refusal, plan.unchanged};
}
