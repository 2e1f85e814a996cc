// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/AnalysisPass.h"
#include "cli/BatchFiles.h"
#include "cli/BatchReport.h"
#include "cli/Command.h"
#include "cli/Recipe.h"

#include <optional>

/// What preview and rename have in common: a recipe and the files that it is for.
class BatchCommand : public Command
{
public:
    explicit BatchCommand(CliEnvironment &environment);

    OptionGroups optionGroups() const override;

protected:
    /// Understands file options and recipe, and reads what the recipe names. A status when that is
    /// impossible. Until then signals end the program.
    std::optional<int> understand(const CommandLine &line);
    /// Lists and orders the files. A status when that is impossible.
    std::optional<int> collect(const CommandLine &line);

    const Recipe &recipe() const { return m_recipe; }
    const BatchFiles &files() const { return m_files; }
    qsizetype total() const { return static_cast<qsizetype>(m_files.files().size()); }
    AnalysisPass analysis(bool colourCode);
    /// Metadata for one pass over the files; null when the recipe needs none.
    std::unique_ptr<TMetadataSource> metadataSource();
    /// Tells report what each file would be called.
    PreviewOutcome preview(BatchReport &report);

    /// Ends a preview that was interrupted: closes the document, and says how far it came.
    int endInterrupted(BatchReport &report, const PreviewOutcome &outcome);

private:
    Recipe m_recipe;
    BatchFiles m_files;
};
