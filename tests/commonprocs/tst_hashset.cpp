// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/HashSet128.h"
#include "commonprocs/RepeatedNumbers.h"

#include <QRandomGenerator>
#include <QTest>

#include <map>
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

    void repeatedNumbers_data()
    {
        QTest::addColumn<quint64>("factor");
        QTest::newRow("close together") << quint64{1};
        QTest::newRow("far apart") << quint64{0x1000'0000'0000'0001};
    }

    void repeatedNumbers()
    {
        QFETCH(quint64, factor);
        QRandomGenerator random(3);
        std::map<quint64, int> model;
        RepeatedNumbers numbers;
        for (int i = 0; i < 5000; ++i) {
            const quint64 number = random.bounded(20'000) * factor;
            numbers.add(number);
            ++model[number];
        }
        numbers.settle();
        for (quint64 i = 0; i < 20'000; ++i) {
            const auto found = model.find(i * factor);
            QCOMPARE(numbers.contains(i * factor), found != model.end() && found->second > 1);
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
