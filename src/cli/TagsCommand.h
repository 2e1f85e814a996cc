// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/BatchFiles.h"
#include "cli/Command.h"
#include "platform/TMetadata.h"

/// "tags": the metadata that the rules see for each file.
class TagsCommand : public Command
{
public:
    explicit TagsCommand(CliEnvironment &environment);

    Help help() const override;
    OptionGroups optionGroups() const override;

protected:
    int run(const CommandLine &line) override;

private:
    bool printAll();
    bool isReadable(const TFileItem &file);
    void printFile(const TFileItem &file, const TMetadataSource::Metadata &metadata);
    void printText(const TFileItem &file, const TMetadataSource::Metadata &metadata);

    BatchFiles m_files;
    JsonWriter m_json;
    qsizetype m_unreadable = 0; ///< files there that nobody lets us look into
};
