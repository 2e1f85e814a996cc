// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/ImageReader.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

/// Numbers may differ in their last digits, texts in blanks at their ends, and a list of one is as
/// good as its element: all that gives the same name.
bool agrees(const QJsonValue &want, const QJsonValue &got, double tolerance)
{
    if (want.isArray() || got.isArray()) {
        const QJsonArray left = want.isArray() ? want.toArray() : QJsonArray{want};
        const QJsonArray right = got.isArray() ? got.toArray() : QJsonArray{got};
        return std::equal(
            left.begin(), left.end(), right.begin(), right.end(),
            [&](const QJsonValue &a, const QJsonValue &b) { return agrees(a, b, tolerance); });
    }
    if (want.isString() && got.isString())
        return want.toString().trimmed() == got.toString().trimmed();
    const double a = want.toVariant().toDouble();
    const double b = got.toVariant().toDouble();
    return !got.isUndefined() && std::abs(a - b) <= tolerance * std::max(std::abs(a), std::abs(b));
}

/// What a rule can see of a wished tag: its value, or whether it or the whole category is missing.
QVariantList wishedOf(const QVariantMap &properties, const ImageWish &wish)
{
    QVariantList seen;
    for (const ImageWish::Tag &tag : wish.tags) {
        const bool isTopLevel = tag.category.isEmpty();
        const QVariantMap from = isTopLevel ? properties : properties.value(tag.category).toMap();
        seen << (isTopLevel || properties.contains(tag.category)) << from.value(tag.tag);
    }
    return seen;
}

} // namespace

/// Real photos of many cameras, with the values on which independent readers agree.
class TestImageCorpus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_corpus.setPath(qEnvironmentVariable(
            "TAVRIN_CORPUS", QString::fromUtf8(TAVRIN_SOURCE_DIR) + u"/../shared/corpus"_s));
    }
    void valuesAgree();
    void wishesAreReadAlike();

private:
    void compare(const QString &file, const QJsonObject &expected);

    QDir m_corpus;
    int m_values = 0;
    QStringList m_differences;
};

void TestImageCorpus::valuesAgree()
{
    QFile answers(m_corpus.filePath(u"images.jsonl"_s));
    if (!answers.open(QIODevice::ReadOnly)) {
        qWarning("No corpus at %s: nothing was compared.", qPrintable(m_corpus.path()));
        return;
    }
    while (!answers.atEnd()) {
        const QJsonObject answer = QJsonDocument::fromJson(answers.readLine()).object();
        compare(answer.value("file"_L1).toString(), answer.value("expect"_L1).toObject());
    }
    QVERIFY(m_values > 0);
    QCOMPARE(m_differences.join(u'\n'), QString());
}

void TestImageCorpus::wishesAreReadAlike()
{
    const ImageWish common{{{u"{TIFF}"_s, u"Model"_s},
                            {u"{Exif}"_s, u"DateTimeOriginal"_s},
                            {u""_s, u"Orientation"_s},
                            {u"{GPS}"_s, u"Latitude"_s}}};
    const ImageWish iptc{{{u"{IPTC}"_s, u"City"_s}}};
    const ImageWish profile{{{u""_s, u"ProfileName"_s}}};
    QDirIterator files(m_corpus.filePath(u"images"_s), QDir::Files);
    while (files.hasNext()) {
        const QByteArray path = files.next().toUtf8();
        const QVariantMap all = readImageProperties(path).value_or(QVariantMap());
        for (const ImageWish &wish : {common, iptc, profile}) {
            const QVariantMap some = readImageProperties(path, wish).value_or(QVariantMap());
            QVERIFY2(wishedOf(some, wish) == wishedOf(all, wish), path.constData());
            QVERIFY2(some.isEmpty() == all.isEmpty(), path.constData());
        }
    }
}

void TestImageCorpus::compare(const QString &file, const QJsonObject &expected)
{
    const auto read = readImageProperties(m_corpus.filePath(u"images/"_s + file).toUtf8());
    const QJsonObject properties = QJsonObject::fromVariantMap(read.value_or(QVariantMap()));
    for (auto category = expected.begin(); category != expected.end(); ++category) {
        const QJsonObject values = category.value().toObject();
        const QJsonObject found = category.key() == "General"_L1
                                      ? properties
                                      : properties.value(u'{' + category.key() + u'}').toObject();
        for (auto it = values.begin(); it != values.end(); ++it) {
            const QJsonValue got = found.value(it.key());
            const bool isAbsentFalse = it.value() == QJsonValue(false) && got.isUndefined();
            // PNG keeps dots per metre as whole numbers.
            const double tolerance = it.key().startsWith("DPI"_L1) ? 1e-3 : 1e-6;
            ++m_values;
            if (!isAbsentFalse && !agrees(it.value(), got, tolerance))
                m_differences.append(file + u' ' + category.key() + u'/' + it.key());
        }
    }
}

QTEST_GUILESS_MAIN(TestImageCorpus)
#include "tst_imagecorpus.moc"
