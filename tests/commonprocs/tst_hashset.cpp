// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/HashSet128.h"

#include <QRandomGenerator>
#include <QTest>

#include <set>

using namespace Qt::StringLiterals;

class TestHashSet : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void behavesLikeASet()
    {
        // Crowded home slots, so that removals have to mend long probe runs.
        QRandomGenerator random(7);
        std::set<quint64> model;
        HashSet128 set;
        for (int i = 0; i < 200'000; ++i) {
            const quint64 number = random.bounded(4096);
            const Hash128 hash{number % 97, number + 1};
            switch (random.bounded(3)) {
            case 0:
                QCOMPARE(set.insert(hash), model.insert(number).second);
                break;
            case 1:
                QCOMPARE(set.remove(hash), model.erase(number) == 1);
                break;
            default:
                QCOMPARE(set.contains(hash), model.contains(number));
            }
            QCOMPARE(set.size(), static_cast<qsizetype>(model.size()));
        }
    }

    void hashesTellTextsApart()
    {
        // Neighbouring names differ in one digit, their length or a trailing NUL.
        HashSet128 set;
        QString name;
        for (int i = 0; i < 100'000; ++i) {
            name = u"IMG_%1.jpg"_s.arg(i);
            QVERIFY(set.insert(Hash128::of(QStringView(name))));
            QVERIFY(set.insert(Hash128::of(QByteArrayView(name.toLatin1()))));
        }
        for (qsizetype length = 0; length < 40; ++length)
            QVERIFY(set.insert(Hash128::of(QByteArrayView(QByteArray(length, '\0')))));
        QVERIFY(!set.insert(Hash128::of(QStringView(name))));
    }
};

QTEST_GUILESS_MAIN(TestHashSet)
#include "tst_hashset.moc"
