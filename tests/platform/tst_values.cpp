// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/RunsPool.h"
#include "platform/TAttributedString.h"
#include "platform/TColor.h"
#include "platform/TImage.h"
#include "platform/TreeCoder.h"
#include "support/Table.h"

#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

template <typename T>
T copied(const T &value)
{
    TreeArchive tree;
    tree.appendObject(T::archiveClass(),
                      [&value](TEncoder &coder) { value.encodeWithCoder(coder); });
    T copy;
    tree.forEachObject([&copy](const TDecoder &coder) { copy.initWithCoder(coder); });
    return copy;
}

template <typename T>
T decodedFrom(const TEncoder::Encode &encode, T value = {})
{
    TreeArchive tree;
    tree.appendObject(T::archiveClass(), encode);
    tree.forEachObject([&value](const TDecoder &coder) { value.initWithCoder(coder); });
    return value;
}

constexpr TColor kRed(255, 0, 0);
constexpr TColor kBlue(0, 0, 255);

} // namespace

class TestValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void colourFromHex_data()
    {
        const Table<QString, QString> row("hex", "expected");
        row("upper case", u"9C988A", u"9C988A");
        row("lower case", u"fff5c3", u"FFF5C3");
        row("black", u"000000", u"000000");
        row("too short", u"FFF5C", QString());
        row("too long", u"FFF5C30", QString());
        row("other letter", u"GFF5C3", QString());
        row("sign", u"+FF5C3", QString());
        row("wide digit", u"FFF5C３", QString());
        row("nothing", QString(), QString());
    }

    void colourFromHex()
    {
        QFETCH(QString, hex);
        QFETCH(QString, expected);
        QCOMPARE(TColor::fromHex(hex).hex(), expected);
        QCOMPARE(TColor::fromHex(hex).isSet(), !expected.isEmpty());
    }

    void everyChannelComesBack()
    {
        for (int i = 0; i < 256; ++i) {
            const auto channel = static_cast<quint8>(i);
            const TColor colour(channel, static_cast<quint8>(255 - i), static_cast<quint8>(i / 2));
            QCOMPARE(copied(colour), colour);
        }
        QVERIFY(!copied(TColor()).isSet());
    }

    void colourFromArchive_data()
    {
        const Table<qint64, QByteArray, TColor> row("space", "rgb", "expected");
        row("plain", 1, QByteArray("1 0 0"), kRed);
        row("with NUL", 1, QByteArray("0 0 1\0", 6), kBlue);
        row("other space", 3, QByteArray("1 0 0"), TColor());
        row("two channels", 1, QByteArray("1 0"), TColor());
        row("too bright", 1, QByteArray("1.5 0 0"), TColor());
        row("not a number", 1, QByteArray("nan 0 0"), TColor());
        row("nothing", 1, QByteArray(), TColor());
    }

    void colourFromArchive()
    {
        QFETCH(qint64, space);
        QFETCH(QByteArray, rgb);
        QFETCH(TColor, expected);
        const auto encode = [&](TEncoder &coder) {
            coder.encodeInteger("NSColorSpace"_L1, space);
            coder.encodeData("NSRGB"_L1, rgb);
        };
        QCOMPARE(decodedFrom<TColor>(encode, TColor(1, 2, 3)), expected);
    }

    void imageComesBack()
    {
        QCOMPARE(copied(TImage(u"tick"_s)).name(), u"tick"_s);
        QVERIFY(!copied(TImage()).isSet());
    }

    void runsCoverTheText()
    {
        using Runs = std::vector<TAttributedString::Run>;
        TAttributedString text(u"ab"_s);
        QVERIFY(text.runs().empty());
        text.append(u"", kRed);
        QVERIFY(text.runs().empty());
        text.append(u"cde", kRed, kBlue);
        text.append(u"f", kRed, kBlue);
        text.append(u"g");
        QCOMPARE(text.string(), u"abcdefg"_s);
        QVERIFY((text.runs() == Runs{{2, {}, {}}, {4, kRed, kBlue}, {1, {}, {}}}));
        QVERIFY((TAttributedString(u"xy"_s, kRed, {}).runs() == Runs{{2, kRed, {}}}));
        QVERIFY(TAttributedString(u""_s, kRed, {}).runs().empty());
        QVERIFY(TAttributedString(u"xy"_s, {}, {}).runs().empty());
    }

    void equalTextsShare()
    {
        RunsPool pool;
        TAttributedString text(u"ab"_s, kRed, {});
        TAttributedString equal(u"xy"_s, kRed, {});
        TAttributedString longer(QString(3, u'z'), kRed, {});
        TAttributedString same(QString(3, u'z'), kBlue, {});
        for (TAttributedString *each : {&text, &equal, &longer, &same})
            pool.share(*each);
        QCOMPARE(&text.runs(), &equal.runs());
        QVERIFY(longer.runs() != text.runs());
        QCOMPARE(same.string().constData(), longer.string().constData());
        QVERIFY(same.runs() != longer.runs());
        equal.append(u"z", kBlue);
        QCOMPARE(text, TAttributedString(u"ab"_s, kRed, {}));
    }

    void attributedStringComesBack()
    {
        TAttributedString text(u"a"_s, kRed, {});
        text.append(u"😀", {}, kBlue);
        text.append(u"b");
        QCOMPARE(copied(text), text);
        QCOMPARE(copied(TAttributedString(u"plain"_s)), TAttributedString(u"plain"_s));
    }

    void runsEndWithTheText()
    {
        const auto run = [](qint64 length) {
            return QVariantMap{{u"length"_s, length}, {u"background"_s, u"FF0000"_s}};
        };
        const auto text = decodedFrom<TAttributedString>([&run](TEncoder &coder) {
            coder.encodeString("NSString"_L1, u"abc"_s);
            coder.encodeVariant("runs"_L1,
                                QVariantList{run(-1), run(0), run(1LL << 40), run(5), 7});
        });
        QVERIFY((text.runs() == std::vector<TAttributedString::Run>{{3, kRed, {}}}));
    }
};

QTEST_GUILESS_MAIN(TestValues)
#include "tst_values.moc"
