// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/URLListProcessing.h"
#include "rules/TRuleModel.h"

#include <QMimeData>

#include <memory>
#include <vector>

/// What travels on the drag pasteboard within and between documents, and the tiles of the palette
/// as data. Everything read from a pasteboard may come from another program.
namespace TDocumentDrag {

/// "com.zel.tavrin", which carries the identity of the source document.
QString baseType();
/// The base and "rules": an archive of the dragged rules.
QString rulesType();
/// The base and "fileTable": the drag comes from a file table.
QString fileTableType();
/// The base and "fileObjects": entries for another window, which nobody accepts.
QString fileObjectsType();
/// The base and "indexes": an archive of the dragged rows.
QString indexesType();

/// The drag of a palette tile: an archive of its one new rule. Null, and a line in the diagnostic
/// log, for an unknown identifier.
std::unique_ptr<QMimeData> dataForTile(const QString &identifier);
/// A drag of copies of rules.
std::unique_ptr<QMimeData> dataForRules(const TRuleList &rules);
/// A drag of a document's own rules, by place, which may also be dropped on other documents.
std::unique_ptr<QMimeData> dataForRulesAt(const TRuleList &all, const std::vector<qsizetype> &rows,
                                          const QString &documentUUID);
/// A drag of rows of a document's file table.
std::unique_ptr<QMimeData> dataForFileRows(const std::vector<qsizetype> &rows,
                                           const QString &documentUUID);

QString documentUUID(const QMimeData &data);
/// Ascending, each once; empty when there are none or they are damaged.
std::vector<qsizetype> rows(const QMimeData &data);
/// Empty when there are none or the archive is damaged.
TRuleList rules(const QMimeData &data);
/// The file URLs of a desktop drag; names that are not UTF-8 come through.
TFileURLs fileURLs(const QMimeData &data);

} // namespace TDocumentDrag
