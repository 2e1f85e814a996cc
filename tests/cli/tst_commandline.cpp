// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CommandLine.h"

#include <QTest>

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
    void understands_data();
    void understands();
    void refuses_data();
    void refuses();
    void lastValueCounts();
};

void TestCommandLine::understands_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("result");
    QTest::newRow("nothing") << QStringList{} << u"|"_s;
    QTest::newRow("order of options is kept")
        << QStringList{u"--rule"_s, u"b"_s, u"--quiet"_s, u"--rule=a"_s}
        << u"rule=b quiet= rule=a|"_s;
    QTest::newRow("value with equals signs")
        << QStringList{u"--rule=Text theText=x"_s} << u"rule=Text theText=x|"_s;
    QTest::newRow("empty value") << QStringList{u"--rule="_s} << u"rule=|"_s;
    QTest::newRow("value that looks like an option")
        << QStringList{u"--rule"_s, u"--quiet"_s} << u"rule=--quiet|"_s;
    QTest::newRow("options after words")
        << QStringList{u"a"_s, u"--quiet"_s, u"b"_s} << u"quiet=|a,b"_s;
    QTest::newRow("end of options") << QStringList{u"-q"_s, u"--"_s, u"--quiet"_s, u"-q"_s, u"--"_s}
                                    << u"quiet=|--quiet,-q,--"_s;
    QTest::newRow("lone dash is a word") << QStringList{u"-"_s} << u"|-"_s;
    QTest::newRow("joined letters")
        << QStringList{u"-0qo"_s, u"f"_s} << u"null= quiet= output=f|"_s;
    QTest::newRow("value joined to its letter") << QStringList{u"-qof"_s} << u"quiet= output=f|"_s;
}

void TestCommandLine::understands()
{
    QFETCH(QStringList, arguments);
    const auto line = parse(arguments);
    QVERIFY2(line, qPrintable(line.message()));
    QTEST(asText(line.value()), "result");
}

void TestCommandLine::refuses_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("mentioned");
    QTest::newRow("unknown") << QStringList{u"--rul"_s} << u"--rul; possible: --rule, --null"_s;
    QTest::newRow("unknown with value") << QStringList{u"--foo=1"_s} << u"option --foo;"_s;
    QTest::newRow("unknown letter") << QStringList{u"-qx"_s} << u"option -x;"_s;
    QTest::newRow("missing value") << QStringList{u"--rule"_s} << u"--rule RULE"_s;
    QTest::newRow("missing value of a letter") << QStringList{u"-o"_s} << u"--output FILE"_s;
    QTest::newRow("value for a flag") << QStringList{u"--quiet=1"_s} << u"--quiet takes no value"_s;
}

void TestCommandLine::refuses()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, mentioned);
    const auto line = parse(arguments);
    QVERIFY(!line);
    QVERIFY2(line.message().contains(mentioned), qPrintable(line.message()));
}

void TestCommandLine::lastValueCounts()
{
    const auto line = parse({u"--output=a"_s, u"-o"_s, u"b"_s});
    QCOMPARE(line.value().value("output"_L1), u"b"_s);
    QVERIFY(line.value().has("output"_L1));
    QVERIFY(line.value().value("rule"_L1).isNull());
}

QTEST_GUILESS_MAIN(TestCommandLine)
#include "tst_commandline.moc"
