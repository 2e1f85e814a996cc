// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/TableCommand.h"

#include "cli/Recipe.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kText{
    "Shows the rows that the rule CSVTag would see in a file: cells as they stand, quotes "
    "included. "
    "Text shows one row a line with its number, counted from 0, and cells separated by tabs."};

void printRow(Console &console, qsizetype number, const QStringList &cells)
{
    QByteArray line = QByteArray::number(number);
    for (const QString &cell : cells)
        line += '\t' + displayed(cell);
    console.print(line + '\n');
}

} // namespace

Command::Help TableCommand::help() const
{
    return {"table"_L1,
            "[--json] FILE.csv"_L1,
            "show the rows that the CSV rule would see"_L1,
            kText,
            {}};
}

OptionGroups TableCommand::optionGroups() const
{
    return {Console::commonOptions()};
}

int TableCommand::run(const CommandLine &line)
{
    if (line.words().size() != 1)
        return usageError(u"give one CSV file"_s);
    const QString &path = line.words().first();
    QString problem;
    const TStringTablePtr table = readTable(path, problem);
    JsonWriter json;
    if (!table) {
        console().message(u"%1: %2"_s.arg(path, problem));
        if (console().isJson())
            printJson(json.null());
        return ExitStatus::kIncomplete;
    }
    if (console().isJson())
        json.beginArray();
    qsizetype number = 0;
    for (const QStringList &row : *table) {
        if (!console().isJson()) {
            printRow(console(), number++, row);
            continue;
        }
        json.newLine().beginArray();
        for (const QString &cell : row)
            json.value(cell);
        json.endArray();
        console().print(json.bytes());
        json.clear();
    }
    if (console().isJson())
        printJson(json.newLine().endArray());
    return ExitStatus::kDone;
}
