// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/PresetsManager.h"
#include "support/Rules.h"
#include "support/Table.h"
#include "support/TemporaryTree.h"

#include <QFileInfo>

#include <optional>

using namespace Qt::StringLiterals;

class TestPresets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_tree.emplace();
        m_presets.emplace(m_tree->folder(u"shipped"_s), m_tree->path(u"data/Tavrin/presets"_s));
    }

    void savedPresetReadsBack()
    {
        const auto table = std::make_shared<TStringTable>(TStringTable{{u"a"_s, u"b"_s}, {}});
        const TRuleList rules{
            textRule(u"Holiday "_s), makeRule(u"Original"_s, {{u"dropFromEnd"_s, 7}}),
            makeRule(u"CSVTag"_s, {{u"theRows"_s, QVariant::fromValue(TStringTablePtr(table))}})};
        const TResult<QString> path = m_presets->savePreset(u"My résumé"_s, rules);
        QVERIFY2(path, qPrintable(path.message()));
        QCOMPARE(path.value(), m_tree->path(u"data/Tavrin/presets/My résumé.renamesetting"_s));
        const TResult<TRuleList> read = m_presets->readPreset(path.value());
        QVERIFY2(read, qPrintable(read.message()));
        QCOMPARE(read.value().size(), rules.size());
        for (size_t i = 0; i < rules.size(); ++i) {
            QVariantMap expected = rules[i]->properties();
            QVariantMap found = read.value()[i]->properties();
            if (i == 2) { // tables compare by identity
                QCOMPARE(*found.take(u"theRows"_s).value<TStringTablePtr>(), *table);
                expected.remove(u"theRows"_s);
            }
            QCOMPARE(found, expected);
        }
    }

    void usersPresetHidesAShippedOne()
    {
        shipped(u"First"_s, u"shipped"_s);
        QVERIFY(m_presets->savePreset(u"Other"_s, {textRule(u"user"_s)}));
        QVERIFY(m_presets->savePreset(u"First"_s, {textRule(u"user"_s)}));
        QCOMPARE(tables().front(), u"First: user"_s);
        QCOMPARE(tables().size(), 2);
        const auto entries = m_presets->presets();
        QCOMPARE(entries.size(), size_t{2});
        QVERIFY(!entries.front().shipped);
        QVERIFY(entries.front().path.startsWith(m_tree->path(u"data"_s)));
        QStringList both;
        m_presets->readInternalPresetURLsIntoArray(both);
        m_presets->readExternalPresetURLsIntoArray(both);
        QCOMPARE(both.size(), 3);
    }

    void unreadableFilesAreLeftOut()
    {
        shipped(u"Good"_s, u"good"_s);
        shipped(u"Twice"_s, u"shipped"_s);
        m_tree->file(u"data/Tavrin/presets/Twice.renamesetting"_s, "bplist00 and then rubbish");
        m_tree->file(u"data/Tavrin/presets/Empty.renamesetting"_s);
        m_tree->folder(u"data/Tavrin/presets/Folder.renamesetting"_s);
        m_tree->link(u"nowhere"_s, u"data/Tavrin/presets/Link.renamesetting"_s);
        QStringList read = tables();
        read.sort();
        QCOMPARE(read, QStringList({u"Good: good"_s, u"Twice: shipped"_s}));
        QVERIFY(!m_presets->readPreset(m_tree->path(u"shipped/Missing.renamesetting"_s)));
    }

    void listsFilesByExtensionInAnyFolder()
    {
        m_tree->file(u"shipped/deep/er/Nested.renamesetting"_s);
        m_tree->file(u"shipped/note.txt"_s);
        m_tree->file(u"shipped/Loud.RENAMESETTING"_s);
        m_tree->file(u"shipped/.hidden.renamesetting"_s);
        QStringList paths;
        m_presets->readInternalPresetURLsIntoArray(paths);
        QCOMPARE(paths, {m_tree->path(u"shipped/deep/er/Nested.renamesetting"_s)});
        QCOMPARE(m_presets->presets().front().name, u"Nested"_s);
    }

    void colonBecomesAPeriod()
    {
        QVERIFY(m_presets->savePreset(u"A:B::C"_s, {textRule(u"t"_s)}));
        QVERIFY(m_tree->exists(u"data/Tavrin/presets/A.B..C.renamesetting"_s));
        QCOMPARE(tables(), {u"A.B..C: t"_s});
    }

    void savingOverwrites()
    {
        QVERIFY(m_presets->savePreset(u"P"_s, {textRule(u"old"_s)}));
        QVERIFY(m_presets->savePreset(u"P"_s, {textRule(u"new"_s)}));
        QCOMPARE(tables(), {u"P: new"_s});
        QCOMPARE(m_tree->list(u"data/Tavrin/presets"_s), {u"P.renamesetting"_s});
    }

    void refusedNames_data()
    {
        const Table<QString> row("name");
        row("empty", u"");
        row("slash", u"a/b");
        row("parent", u"../../x");
        row("hidden", u":a");
        row("too long", QString(243, 'x'_L1));
        row("NUL", u"a"_s + QChar(0));
        row("raw byte", u"a"_s + QChar(0xDCE9));
    }

    void refusedNames()
    {
        QFETCH(QString, name);
        const TResult<QString> saved = m_presets->savePreset(name, {textRule(u"t"_s)});
        QVERIFY(!saved);
        QVERIFY(!saved.message().isEmpty());
        QCOMPARE(m_tree->list(), {u"shipped/"_s});
    }

    void noRulesAreNoPreset()
    {
        QVERIFY(!m_presets->savePreset(u"None"_s, {}));
        QCOMPARE(m_tree->list(), {u"shipped/"_s});
    }

    void readingMakesNoFolder()
    {
        QVERIFY(m_presets->readPresets().empty());
        QVERIFY(m_presets->presets().empty());
        QVERIFY(!m_tree->exists(u"data"_s));
        QVERIFY(m_presets->savePreset(u"P"_s, {textRule(u"t"_s)}));
        const auto permissions = QFileInfo(m_tree->path(u"data/Tavrin"_s)).permissions();
        QVERIFY(!(permissions & (QFileDevice::ReadGroup | QFileDevice::ReadOther)));
    }

    void deletingSparesShippedPresets()
    {
        shipped(u"Both"_s, u"shipped"_s);
        QVERIFY(m_presets->savePreset(u"Both"_s, {textRule(u"user"_s)}));
        QVERIFY(m_presets->deletePreset(u"Both"_s));
        QCOMPARE(tables(), {u"Both: shipped"_s});
        const TResult<bool> refused = m_presets->deletePreset(u"Both"_s);
        QVERIFY(!refused);
        QVERIFY2(refused.message().contains("Both"_L1), qPrintable(refused.message()));
        QVERIFY(m_tree->exists(u"shipped/Both.renamesetting"_s));
        QVERIFY(!m_presets->deletePreset(u"Unknown"_s));
    }

    void namesNeedNotBeUtf8OnDisk()
    {
        shipped(u"P"_s, u"t"_s);
        m_tree->rawFile("data/Tavrin/presets/caf\xE9.renamesetting",
                        m_tree->content(u"shipped/P.renamesetting"_s));
        const QString name = u"caf"_s + QChar(0xDCE9);
        QVERIFY(tables().contains(name + u": t"_s));
        QVERIFY(m_presets->deletePreset(name));
        QVERIFY(m_tree->list(u"data/Tavrin/presets"_s).isEmpty());
    }

    void standardFolders()
    {
        const QString ship = shipped(u"Ours"_s, u"shipped"_s);
        qputenv("XDG_DATA_HOME", m_tree->path(u"data"_s).toUtf8());
        qputenv("TAVRIN_PRESETS", m_tree->path(u"shipped"_s).toUtf8());
        m_presets.emplace(PresetsManager::standard());
        QVERIFY(!m_tree->exists(u"data"_s));
        QCOMPARE(m_presets->presets().front().path, ship);
        QCOMPARE(m_presets->savePreset(u"Mine"_s, {textRule(u"t"_s)}).value(),
                 m_tree->path(u"data/Tavrin/presets/Mine.renamesetting"_s));
        qunsetenv("TAVRIN_PRESETS");
    }

private:
    QString shipped(const QString &name, const QString &text) const
    {
        const PresetsManager asMaker(QString(), m_tree->path(u"shipped"_s));
        return asMaker.savePreset(name, {textRule(text)}).value();
    }
    /// "name: text of its first rule" of every preset.

    QStringList tables() const
    {
        QStringList lines;
        for (const auto &[name, rules] : m_presets->readPresets())
            lines << name + u": "_s + rules.front()->name();
        return lines;
    }

    std::optional<TemporaryTree> m_tree;
    std::optional<PresetsManager> m_presets;
};

QTEST_GUILESS_MAIN(TestPresets)
#include "tst_presets.moc"
