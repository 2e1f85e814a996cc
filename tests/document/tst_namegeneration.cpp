// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/AnalysisRun.h"
#include "document/NameGeneration.h"
#include "document/TRenameOperation.h"
#include "support/Rules.h"
#include "support/Table.h"

using namespace Qt::StringLiterals;

namespace {

TFileItem itemFor(const QString &path)
{
    return {TFileURL::fileURLWithPath(path), {}};
}

TFileList entriesFor(const QStringList &paths)
{
    TFileList files;
    for (const QString &path : paths)
        files.push_back(std::make_shared<TFileObject>(itemFor(path)));
    return files;
}

QStringList texts(const TErrorLog &log)
{
    QStringList result;
    for (const TErrorTypes &entry : log)
        result += QString::number(entry.errClass) + u' ' + entry.errDesc.toString();
    return result;
}

} // namespace

class TestNameGeneration : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fragmentCleaning_data()
    {
        const Table<QString, int, QString> row("fragment", "compliance", "cleaned");
        row("off replaces", u"a:b/c", 0, u"a_b_c");
        row("on keeps", u"a:b/c", 1, u"a:b/c");
        row("others stay", u".a\\b*", 0, u".a\\b*");
        row("null", QString(), 0, u"");
    }

    void fragmentCleaning()
    {
        QFETCH(QString, fragment);
        QFETCH(int, compliance);
        TOptions options;
        options.compliance = compliance;
        const QString cleaned = NameGeneration::postProcessFragment(fragment, options);
        QTEST(cleaned, "cleaned");
        QVERIFY(!cleaned.isNull());
    }

    void shownAndFinalNames_data()
    {
        const Table<TRuleList, QString, QString> row("rules", "shown", "base");
        const TRulePtr name = makeRule(u"Original"_s);
        row("joined in order",
            TRuleList{textRule(u"A"_s), makeRule(u"Separator"_s, {{u"separatorIndex"_s, 1}}), name},
            u"A_file", u"A_file");
        row("shown untrimmed, used trimmed", TRuleList{textRule(u" \tA "_s)}, u" \tA ", u"A");
        row("inner colon cleaned before the next rule reads it",
            TRuleList{textRule(u"a:b"_s), patternRule(u":"_s, u"-"_s, 1, 1)}, u"a_b", u"a_b");
        row("rewriting replaces the whole name",
            TRuleList{textRule(u"Holiday 01"_s), patternRule(u" "_s, u"-"_s, 1, 1)}, u"Holiday-01",
            u"Holiday-01");
        row("without replaceAll the name stands twice",
            TRuleList{textRule(u"a b"_s), patternRule(u" "_s, u"-"_s, 1, 0)}, u"a ba-b", u"a ba-b");
        row("the second of two rewrites reads the doubled text",
            TRuleList{textRule(u"ab"_s), patternRule(u"a"_s, u"x"_s, 1, 1),
                      patternRule(u"b"_s, u"y"_s, 1, 1)},
            u"ayxy", u"ayxy");
        row("a negative source reads the name but never replaces it",
            TRuleList{textRule(u"ab"_s), patternRule(u"a"_s, u"x"_s, -1, 1)}, u"abxb", u"abxb");
    }

    void shownAndFinalNames()
    {
        QFETCH(TRuleList, rules);
        TFileObject file(itemFor(u"/d/file.txt"_s));
        TExtensionHandler handler;
        TRuleDict dict;
        dict.batchSize = 1;
        for (const TRulePtr &rule : rules)
            rule->setTheID(77);
        QTEST(NameGeneration::applyRuleSet(&rules, file, 0, nullptr, dict, {}, true).string(),
              "shown");
        const TEvaluatedName name = TRenameOperation::evaluate(&rules, handler, file, 0, 1, {});
        QTEST(name.base, "base");
        QCOMPARE(name.extension, u"txt"_s);
        for (const TRulePtr &rule : rules)
            QCOMPARE(rule->theID(), 77);
    }

    void colours()
    {
        TFileObject file(itemFor(u"/d/file.txt"_s));
        TRuleList rules{textRule(u"ab"_s), textRule(u"cde"_s)};
        rules[0]->setTheColor(TColor(1, 1, 1));
        rules[1]->setTheColor(TColor(2, 2, 2));
        TRuleDict dict;
        const auto shown = [&](bool colorCode) {
            return NameGeneration::applyRuleSet(&rules, file, 0, nullptr, dict, {}, colorCode);
        };
        const std::vector<TAttributedString::Run> perRule{{2, TColor(1, 1, 1), {}},
                                                          {3, TColor(2, 2, 2), {}}};
        QVERIFY(shown(true).runs() == perRule);
        QVERIFY(shown(false).runs().empty());
        // A rewrite colours the whole name, also when colour coding is off.
        rules.push_back(patternRule(u"c"_s, u"C"_s, 1, 1));
        rules[2]->setTheColor(TColor(3, 3, 3));
        const std::vector<TAttributedString::Run> whole{{5, TColor(3, 3, 3), {}}};
        QVERIFY(shown(true).runs() == whole);
        QVERIFY(shown(false).runs() == whole);
    }

    void missingRules()
    {
        const QStringList problem{u"2 No rules defined. You need at least one naming rule"_s};
        TExtensionHandler handler;
        TRuleDict dict;
        const TRuleList none;
        for (const bool absent : {true, false}) {
            TFileObject file(itemFor(u"/d/a.txt"_s));
            TErrorLog log;
            const TRuleList *rules = absent ? nullptr : &none;
            QCOMPARE(NameGeneration::applyRuleSet(rules, file, 0, &log, dict, {}, true).string(),
                     u"No Rules"_s);
            QCOMPARE(texts(log), problem);
            // Only an empty list is reported on the file.
            QCOMPARE(texts(file.errLog()), absent ? QStringList() : problem);
            const TEvaluatedName name = TRenameOperation::evaluate(rules, handler, file, 0, 1, {});
            QVERIFY(name.base.isNull());
            const QString first = u"a: no rule to generate name. aborting rename\n"_s;
            const QString second = u"a: too few rules to generate name. aborting rename\n"_s;
            QCOMPARE(name.textLog, absent ? first + second : second);
        }
    }

    void emptyNames()
    {
        TFileObject file(itemFor(u"/d/a.txt"_s));
        const TRuleList rules{textRule(u" \n "_s)};
        TExtensionHandler handler;
        TErrorLog log;
        TRuleDict dict;
        QCOMPARE(NameGeneration::applyRuleSet(&rules, file, 0, &log, dict, {}, true).string(),
                 u" \n "_s);
        QCOMPARE(texts(file.errLog()), QStringList{u"2 Rules evaluate to empty name."_s});
        QCOMPARE(log, file.errLog());
        const TEvaluatedName name = TRenameOperation::evaluate(&rules, handler, file, 0, 1, {});
        QCOMPARE(name.fullName(), u"SafeName.txt"_s);
        QCOMPARE(texts(name.errors),
                 QStringList{u"1 Rules evaluated to empty name. SafeName used"_s});
        QCOMPARE(name.textLog, u"a: rules evalued to empty name. 'SafeName' substituted.\n"_s);
        QVERIFY(name.wasEmpty);
    }

    void duplicates()
    {
        // Case and folder do not matter, the file's own extension does, and only later files are
        // told.
        TRuleList rules{makeRule(u"Original"_s)};
        TExtensionHandler handler;
        handler.setHandlingMethod(TExtensionHandler::kReplace);
        AnalysisRun run{&rules, &handler, {}, true, false};
        const TFileList files =
            entriesFor({u"/d/x.jpg"_s, u"/e/X.JPG"_s, u"/d/x.png"_s, u"/d/stra\u00DFe.a"_s,
                        u"/d/STRASSE.a"_s, u"/d/x.jpg2"_s});
        TErrorLog log;
        run.fullRun(files, log);
        QList<int> levels;
        for (const auto &file : files)
            levels += file->errLevel();
        QCOMPARE(levels, (QList<int>{0, 1, 0, 0, 1, 0}));
        QCOMPARE(texts(files[1]->errLog()),
                 QStringList{u"1 Duplicate: \"X\" is already used. Check /e/X.JPG"_s});
        QCOMPARE(log.count(), 2);
        run.duplicatesAreCritical = true;
        run.fullRun(files, log);
        QCOMPARE(files[4]->errLevel(), 2);
        QCOMPARE(files[1]->attributedTargetExtension().string(), u".???"_s);
    }

    void entriesComeInOrder()
    {
        // The text rule tells the batch only; the rest is told to file and batch alike.
        TRuleList rules{textRule(u""_s), makeRule(u"CSVTag"_s, {{u"defaultText"_s, u""_s}})};
        TExtensionHandler handler;
        const AnalysisRun run{&rules, &handler, {}, true, false};
        const TFileList files = entriesFor({u"/d/a.txt"_s});
        TErrorLog log;
        run.fullRun(files, log);
        const QStringList fileTexts{u"1 No CSV loaded. Default text used. File: /d/a.txt"_s,
                                    u"2 Rules evaluate to empty name."_s};
        QCOMPARE(texts(files[0]->errLog()), fileTexts);
        QCOMPARE(texts(log), QStringList{u"1 Text constant is empty"_s} + fileTexts);
        const TEvaluatedName name =
            TRenameOperation::evaluate(&rules, handler, *files[0], 0, 1, {});
        QCOMPARE(texts(name.errors),
                 (QStringList{u"1 Text constant is empty"_s, fileTexts[0],
                              u"1 Rules evaluated to empty name. SafeName used"_s}));
    }

    void extensionReportsElsewhere()
    {
        // What the extension handler reports goes to the document's own log, not to the run's.
        TRuleList rules{textRule(u"x"_s)};
        TExtensionHandler handler;
        handler.setHandlingMethod(TExtensionHandler::kRegEx);
        handler.setRegEx(u"(a+)+b"_s);
        const TFileList files = entriesFor({u"/d/a."_s + QString(60, u'a')});
        TErrorLog runLog;
        TErrorLog documentLog;
        AnalysisStepper({&rules, &handler, {}, true, false, 1, &documentLog})
            .step(*files[0], runLog);
        QCOMPARE(texts(documentLog),
                 QStringList{u"2 The regular expression takes too long for this name."_s});
        QVERIFY(runLog.isEmpty());
        QCOMPARE(files[0]->errLevel(), 2);
        QCOMPARE(files[0]->attributedTargetExtension().string(), u"."_s);
    }
};

QTEST_GUILESS_MAIN(TestNameGeneration)
#include "tst_namegeneration.moc"
