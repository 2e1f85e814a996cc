// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliFixture.h"
#include "support/Table.h"

#include <QFileInfo>
#include <QJsonArray>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

const QStringList kRecipe{
    u"--rule"_s, u"Text theText=\"it's \""_s,
    u"--rule"_s, u"Counter padding=3 manualPadding=1"_s,
    u"--rule"_s, u"RegExTag match='(\\d)' replace='<$1>' source=1 replaceAll=1"_s};

int save(CliFixture &cli, const QString &name)
{
    return cli.run(QStringList{u"presets"_s, u"save"_s, name} + kRecipe);
}

QStringList userPresets(CliFixture &cli)
{
    cli.runLine(u"presets list --json"_s);
    QStringList names;
    for (const QJsonValue preset : cli.json()[u"array"_s].toArray()) {
        if (!preset[u"shipped"_s].toBool())
            names.append(preset[u"name"_s].toString());
    }
    return names;
}

} // namespace

class TestPresetsVerb : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void savedPresetIsListedShownAndUsed()
    {
        CliFixture cli;
        QCOMPARE(save(cli, u"My: preset"_s), 0);
        const QString path = cli.tree.path(u"data/Tavrin/presets/My. preset.renamesetting"_s);
        QCOMPARE(cli.out(), path + u'\n');
        QCOMPARE(userPresets(cli), QStringList{u"My. preset"_s});
        QCOMPARE(cli.runLine(u"presets show 'My. preset'"_s), 0);
        QCOMPARE(cli.out(), uR"(Text theText='it'\''s '
Counter padding=3 manualPadding=1
RegExTag match='(\d)' replace='<$1>' source=1 replaceAll=1
)"_s);
        cli.batch({u"a.txt"_s});
        for (const QString &preset : {u"My. preset"_s, path}) {
            QCOMPARE(cli.run({u"preview"_s, u"--json"_s, u"--preset"_s, preset, cli.batchPath()}),
                     0);
            QCOMPARE(cli.json()[u"files"_s][0][u"finalName"_s],
                     QJsonValue(u"it's <0><0><1>.txt"_s));
        }
    }

    void shownPresetIsARecipe()
    {
        CliFixture cli;
        save(cli, u"P"_s);
        QCOMPARE(cli.runLine(u"presets show --json P"_s), 0);
        const QByteArray shown = cli.outBytes();
        const QString recipe = cli.tree.file(u"recipe.json"_s, shown);
        QCOMPARE(cli.run({u"presets"_s, u"save"_s, u"Q"_s, u"--recipe"_s, recipe}), 0);
        QCOMPARE(cli.runLine(u"presets show --json Q"_s), 0);
        QCOMPARE(cli.outBytes(), shown);
        QCOMPARE(cli.json()[u"rules"_s].toArray().size(), 3);
    }

    void exportedPresetComesBack()
    {
        CliFixture cli;
        save(cli, u"P"_s);
        cli.runLine(u"presets show P"_s);
        const QString shown = cli.out();
        const QString file = cli.tree.path(u"Other name.renamesetting"_s);
        QCOMPARE(cli.run({u"presets"_s, u"export"_s, u"P"_s, file}), 0);
        QCOMPARE(cli.run({u"presets"_s, u"import"_s, file}), 0);
        QCOMPARE(cli.runLine(u"presets show 'Other name'"_s), 0);
        QCOMPARE(cli.out(), shown);
        // Exporting again replaces the file and leaves nothing beside it.
        QCOMPARE(cli.run({u"presets"_s, u"export"_s, u"P"_s, file}), 0);
        QCOMPARE(cli.tree.list().filter(u"Other name"_s).size(), 2);
    }

    void exportLeavesWhatIsNoFile_data()
    {
        const Table<QString, bool> row("target", "isFile");
        row("a pipe", u"pipe", false);
        row("a link", u"link", true);
        row("a link that leads nowhere", u"loose", true);
        row("the longest name", QString(255, u'x'), true);
    }

    void exportLeavesWhatIsNoFile()
    {
        QFETCH(QString, target);
        QFETCH(bool, isFile);
        CliFixture cli;
        save(cli, u"P"_s);
        cli.tree.file(u"behind"_s, "old");
        cli.tree.link(u"behind"_s, u"link"_s);
        cli.tree.link(u"new"_s, u"loose"_s);
        const QString pipe = cli.tree.path(u"pipe"_s);
        QCOMPARE(::mkfifo(pipe.toUtf8().constData(), 0600), 0);
        const int reader = ::open(pipe.toUtf8().constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        const QStringList before = cli.tree.list();
        const auto kind = QFileInfo(cli.tree.path(target)).isSymLink();

        QCOMPARE(cli.run({u"presets"_s, u"export"_s, u"--json"_s, u"P"_s, cli.tree.path(target)}),
                 0);
        QCOMPARE(cli.json()[u"path"_s], QJsonValue(cli.tree.path(target)));
        QCOMPARE(QFileInfo(cli.tree.path(target)).isSymLink(), kind);
        QCOMPARE(QFileInfo(cli.tree.path(target)).isFile(), isFile);
        QByteArray content(1 << 16, '\0');
        if (isFile)
            content = cli.tree.content(target);
        else
            content.resize(::read(reader, content.data(), static_cast<size_t>(content.size())));
        ::close(reader);
        QVERIFY(content.startsWith("bplist00"));
        QVERIFY(cli.tree.list().size() <= before.size() + 1); // nothing is left beside it
    }

    void lineBreaksComeBack()
    {
        CliFixture cli;
        QCOMPARE(cli.run({u"presets"_s, u"save"_s, u"P"_s, u"--rule"_s, u"Text theText='a\nb'"_s}),
                 0);
        QCOMPARE(cli.runLine(u"presets show P"_s), 0);
        const QString shown = cli.out().trimmed();
        QCOMPARE(cli.run({u"presets"_s, u"save"_s, u"Q"_s, u"--rule"_s, shown}), 0);
        QCOMPARE(cli.runLine(u"presets show --json Q"_s), 0);
        QCOMPARE(cli.json()[u"rules"_s][0][u"theText"_s], QJsonValue(u"a\nb"_s));
    }

    void deletedPresetIsGone()
    {
        CliFixture cli;
        save(cli, u"P"_s);
        save(cli, u"Q"_s);
        QCOMPARE(cli.runLine(u"presets delete --json P"_s), 0);
        QVERIFY(cli.json()[u"path"_s].toString().endsWith(u"/P.renamesetting"_s));
        QCOMPARE(userPresets(cli), QStringList{u"Q"_s});
        QCOMPARE(cli.runLine(u"presets delete P"_s), 2);
    }

    void whatIsNoRuleIsLeftOut()
    {
        CliFixture cli;
        QCOMPARE(cli.runLine(u"presets save P --rule Counter --extension handlingMethod=3"_s), 0);
        QVERIFY2(cli.err().contains(u"extension settings"_s), qPrintable(cli.err()));
        QCOMPARE(cli.runLine(u"presets save P --rule Counter --compliance"_s), 0);
        QVERIFY2(cli.err().contains(u"options of the recipe"_s), qPrintable(cli.err()));
    }

    void statuses_data()
    {
        const Table<QStringList, QString> row("arguments", "mentioned");
        row("no action", {}, u"possible: list, show, save");
        row("unknown action", {u"lst"_s}, u"\"lst\"; possible: list");
        row("too few arguments", {u"export"_s, u"P"_s}, u"takes 2 arguments");
        row("too many arguments", {u"show"_s, u"P"_s, u"Q"_s}, u"takes 1 argument,");
        row("a recipe that nobody reads", {u"list"_s, u"--rule"_s, u"Bogus"_s}, u"presets save");
        row("an ending", {u"save"_s, u"P.renamesetting"_s, u"--rule"_s, u"Counter"_s}, u"as P");
        row("misspelt file", {u"import"_s, u"/no.renamesetting"_s}, u"check the spelling");
        row("misspelt preset file", {u"show"_s, u"/no.renamesetting"_s}, u"check the spelling");
        row("misspelt name", {u"delete"_s, u"Nn"_s}, u"Nn: there is no such preset; possible: ");
        row("no rules", {u"save"_s, u"P"_s}, u"needs rules");
        row("slash", {u"save"_s, u"a/b"_s, u"--rule"_s, u"Counter"_s}, u"a/b");
        row("unknown", {u"show"_s, u"None"_s}, u"None");
        row("corrupt file", {u"import"_s, u"BROKEN"_s}, u"broken");
        row("shipped", {u"delete"_s, u"Clean up blanks"_s}, u"Clean up blanks");
        row("no such folder", {u"export"_s, u"Clean up blanks"_s, u"/none/x"_s}, u"/none/x");
    }

    void statuses()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, mentioned);
        CliFixture cli;
        arguments.replaceInStrings(u"BROKEN"_s,
                                   cli.tree.file(u"broken.renamesetting"_s, "rubbish"));
        QCOMPARE(cli.run(QStringList{u"presets"_s, u"--json"_s} + arguments), 2);
        QCOMPARE(cli.json()[u"error"_s][u"status"_s], QJsonValue(2));
        QVERIFY2(cli.err().contains(mentioned), qPrintable(cli.err()));
        QCOMPARE(userPresets(cli), QStringList{});
    }
};

QTEST_GUILESS_MAIN(TestPresetsVerb)
#include "tst_presetsverb.moc"
