// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CommandLine.h"
#include "support/Table.h"

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array kOptions{
    OptionInfo{"rule"_L1, "RULE"_L1, "a rule"_L1},
    OptionInfo{"null"_L1, ""_L1, "NUL"_L1, '0'},
    OptionInfo{"quiet"_L1, ""_L1, "quiet"_L1, 'q'},
    OptionInfo{"output"_L1, "FILE"_L1, "file"_L1, 'o'},
};

TResult<CommandLine> parse(const QStringList &arguments)
{
    return CommandLine::parse({{"Test"_L1, kOptions}}, arguments);
}

QString asText(const CommandLine &line)
{
    QStringList parts;
    for (const auto &option : line.options())
        parts.append(option.name + u'=' + option.value);
    return parts.join(u' ') + u'|' + line.words().join(u',');
}

} // namespace

class TestCommandLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void understands_data()
    {
        const Table<QStringList, QString> row("arguments", "result");
        row("nothing", {}, u"|");
        row("order of options is kept", {u"--rule"_s, u"b"_s, u"--quiet"_s, u"--rule=a"_s},
            u"rule=b quiet= rule=a|");
        row("value with equals signs", {u"--rule=Text theText=x"_s}, u"rule=Text theText=x|");
        row("empty value", {u"--rule="_s}, u"rule=|");
        row("value that looks like an option", {u"--rule"_s, u"--quiet"_s}, u"rule=--quiet|");
        row("options after words", {u"a"_s, u"--quiet"_s, u"b"_s}, u"quiet=|a,b");
        row("end of options", {u"-q"_s, u"--"_s, u"--quiet"_s, u"-q"_s, u"--"_s},
            u"quiet=|--quiet,-q,--");
        row("lone dash is a word", {u"-"_s}, u"|-");
        row("joined letters", {u"-0qo"_s, u"f"_s}, u"null= quiet= output=f|");
        row("value joined to its letter", {u"-qof"_s}, u"quiet= output=f|");
    }

    void understands()
    {
        QFETCH(QStringList, arguments);
        const auto line = parse(arguments);
        QVERIFY2(line, qPrintable(line.message()));
        QTEST(asText(line.value()), "result");
    }

    void refuses_data()
    {
        const Table<QStringList, QString> row("arguments", "mentioned");
        row("unknown", {u"--rul"_s}, u"--rul; possible: --rule, --null");
        row("unknown with value", {u"--foo=1"_s}, u"option --foo;");
        row("unknown letter", {u"-qx"_s}, u"option -x;");
        row("missing value", {u"--rule"_s}, u"--rule RULE");
        row("missing value of a letter", {u"-o"_s}, u"--output FILE");
        row("value for a flag", {u"--quiet=1"_s}, u"--quiet takes no value");
    }

    void refuses()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, mentioned);
        const auto line = parse(arguments);
        QVERIFY(!line);
        QVERIFY2(line.message().contains(mentioned), qPrintable(line.message()));
    }

    void lastValueCounts()
    {
        const auto line = parse({u"--output=a"_s, u"-o"_s, u"b"_s});
        QCOMPARE(line.value().value("output"_L1), u"b"_s);
        QVERIFY(line.value().has("output"_L1));
        QVERIFY(line.value().value("rule"_L1).isNull());
    }
};

QTEST_GUILESS_MAIN(TestCommandLine)
#include "tst_commandline.moc"
