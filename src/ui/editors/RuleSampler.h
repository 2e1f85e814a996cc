// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDocument.h"

/// Tells what rules give for single files of a batch. Works on prepared copies of rules and files,
/// so that nothing live is touched, and only on the files asked for. Main thread only.
namespace RuleSampler {

/// A copy, prepared, as a run over the batch starts with it; it draws no colour of the palette.
TRulePtr preparedCopy(const TRulePtr &rule);
/// The place of a file in the batch; 0 when it is not in it.
qsizetype rowOf(const TDocument &document, const TFileObject &file);
/// What a prepared rule gives for a file, cleaned as in a name. soFar is the name before it.
QString fragment(const TDocument &document, TRuleModel &rule, const TFileObject &file,
                 const QString &soFar = QString());
/// The same with a copy made for the purpose.
QString fragmentOfCopy(const TDocument &document, const TRulePtr &rule, const TFileObject &file);
/// The names of some files from a row on, as the rules before this one assemble them.
QStringList namesBefore(const TDocument &document, const TRulePtr &rule, qsizetype row,
                        qsizetype count);

} // namespace RuleSampler
