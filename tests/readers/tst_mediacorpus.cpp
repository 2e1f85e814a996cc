// SPDX-License-Identifier: GPL-3.0-or-later
#include "metadata/TagDictionary.h"
#include "readers/MediaReader.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

/// Where we are right to differ: samples at the start of a stream that are not to be played, and a
/// tag with two values.
const QStringList kDifferences = {u"mutagen-example.opus duration: 00.11"_s,
                                  u"mutagen-example.opus durationHMS: 00.00.11"_s,
                                  u"mutagen-silence_44_s.wv artist: piman, jzig"_s};
constexpr double kNearSeconds = 0.12;
constexpr double kNearShare = 0.01;

/// Dates count by their digits: writers differ in the marks between them.
QString datePart(QString text)
{
    static const QRegularExpression end(u"(\\.0+)?Z?$"_s);
    return text.trimmed().remove(end).replace(u'T', u' ').replace(u':', u'-');
}

bool agrees(const QString &key, const QJsonValue &want, const QVariantMap &tags, double seconds)
{
    if (key == "duration"_L1) {
        const double expected = want.toDouble();
        return std::abs(seconds - expected) <= std::max(kNearSeconds, kNearShare * expected);
    }
    const QString wanted = want.toVariant().toString();
    const QString got = tags.value(key).toString();
    return key == "creationDate"_L1 ? datePart(wanted) == datePart(got)
                                    : wanted.trimmed() == got.trimmed();
}

} // namespace

/// Real songs and films of many writers, with the values on which independent readers agree.
class TestMediaCorpus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void valuesAgree();
};

void TestMediaCorpus::valuesAgree()
{
    const QDir corpus(qEnvironmentVariable("TAVRIN_CORPUS", QString::fromUtf8(TAVRIN_SOURCE_DIR) +
                                                                u"/../shared/corpus"_s));
    QFile answers(corpus.filePath(u"media.jsonl"_s));
    if (!answers.open(QIODevice::ReadOnly)) {
        qWarning("No corpus at %s: nothing was compared.", qPrintable(corpus.path()));
        return;
    }
    QStringList differences;
    int values = 0;
    while (!answers.atEnd()) {
        const QJsonObject answer = QJsonDocument::fromJson(answers.readLine()).object();
        const QString file = answer.value("file"_L1).toString();
        const MediaReading reading =
            readMedia(QFile::encodeName(corpus.filePath(u"media/"_s + file)))
                .value_or(MediaReading());
        const QVariantMap tags = tagDictionary(reading, {});
        const QJsonObject expected = answer.value("expect"_L1).toObject();
        for (auto it = expected.begin(); it != expected.end(); ++it) {
            if (it.key() == "durationText"_L1)
                continue;
            ++values;
            if (!agrees(it.key(), it.value(), tags, reading.duration)) {
                differences.append(file + u' ' + it.key() + u": "_s +
                                   tags.value(it.key()).toString());
            }
        }
    }
    QVERIFY(values > 0);
    QCOMPARE(differences.join(u'\n'), kDifferences.join(u'\n'));
}

QTEST_GUILESS_MAIN(TestMediaCorpus)
#include "tst_mediacorpus.moc"
