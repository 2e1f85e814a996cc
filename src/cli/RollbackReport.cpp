// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/RollbackReport.h"

#include "cli/Console.h"
#include "cli/JsonBatchReport.h"

using namespace Qt::StringLiterals;

namespace {

/// Files come back to the folder they were renamed in.
TFileURL restoredTo(const TRenameTRX &record, const QString &name)
{
    return {record.originalURL.folder(), name};
}

void writeRecord(JsonWriter &json, const TRenameTRX &record, const QString &restored)
{
    json.beginObject();
    json.key("original"_L1).value(record.originalURL.path());
    json.key("renamed"_L1).value(record.renamedURL.path());
    json.key("restored"_L1);
    json.valueOrNull(restored.isNull() ? QString() : restoredTo(record, restored).path());
    json.key("status"_L1).value(record.renamedExistsWithStatus);
    json.key("errors"_L1);
    writeProblems(json, record.errorLog);
    json.endObject();
}

void writeCounts(JsonWriter &json, const RollbackResult &result)
{
    json.key("restored"_L1).value(qint64{result.restoredCount});
    json.key("failed"_L1).value(qint64{result.failedCount});
    json.key("skipped"_L1).value(qint64{result.skippedCount});
    json.endObject();
}

void printAsJson(Console &console, const RollbackResult &result)
{
    const bool lines = console.form() == Console::Form::JsonLines;
    JsonWriter json;
    const auto writeOut = [&](QByteArrayView ending) {
        console.print(json.bytes());
        console.print(ending);
        json.clear();
    };
    if (!lines)
        json.beginObject().key("log"_L1).value(result.log).key("records"_L1).beginArray();
    for (std::size_t i = 0; i < result.records.size(); ++i) {
        if (!lines)
            json.newLine();
        writeRecord(json, result.records[i], result.restored[i]);
        writeOut(lines ? "\n" : "");
    }
    if (lines)
        json.beginObject().key("log"_L1).value(result.log);
    else
        json.newLine().endArray();
    writeCounts(json, result);
    writeOut("\n");
}

/// The name of a place, or its whole path for those who want to know more.
QString shown(const Console &console, const TFileURL &url)
{
    return console.isVerbose() ? url.path() : url.lastPathComponent();
}

void printRecord(Console &console, const TRenameTRX &record, const QString &restored)
{
    const TFileURL target = restored.isNull() ? record.originalURL : restoredTo(record, restored);
    if (!console.isQuiet())
        console.printArrow(shown(console, record.renamedURL), shown(console, target));
    for (const TErrorTypes &problem : record.errorLog) {
        const QByteArray mark =
            problem.errClass == TErrorTypes::kCritical ? "critical: " : "warning: ";
        const QByteArray text = mark + displayed(problem.errDesc.toString()) + '\n';
        if (console.isQuiet())
            console.problemLine(displayed(record.renamedURL.path()) + ": " + text);
        else
            console.print("    " + text);
    }
}

void printAsText(Console &console, const RollbackResult &result)
{
    for (std::size_t i = 0; i < result.records.size(); ++i)
        printRecord(console, result.records[i], result.restored[i]);
    const auto total = static_cast<qsizetype>(result.records.size());
    if (result.checkOnly)
        console.printLine(
            u"%1 of %2 files can be restored"_s.arg(total - result.skippedCount).arg(total));
    else
        console.printLine(u"%1 restored, %2 failed, %3 skipped"_s.arg(result.restoredCount)
                              .arg(result.failedCount)
                              .arg(result.skippedCount));
}

} // namespace

void printRollback(Console &console, const RollbackResult &result)
{
    if (console.isJson())
        printAsJson(console, result);
    else
        printAsText(console, result);
}
