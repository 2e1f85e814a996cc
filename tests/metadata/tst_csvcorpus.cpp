// SPDX-License-Identifier: GPL-3.0-or-later
#include "metadata/TCSVAggregator.h"
#include "settings/logging.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QJsonValue toJson(const TStringTablePtr &table)
{
    if (!table)
        return QJsonValue::Null;
    QJsonArray rows;
    for (const QStringList &row : *table)
        rows.append(QJsonArray::fromStringList(row));
    return rows;
}

} // namespace

/// Real files of many origins, with the tables that an independent reader found in them.
class TestCsvCorpus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        setLogSink([](const QString &) {});
    }
    void tableIsAsExpected_data();
    void tableIsAsExpected();
};

void TestCsvCorpus::tableIsAsExpected_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QJsonValue>("rows");
    const QDir corpus(qEnvironmentVariable("TAVRIN_CORPUS", QString::fromUtf8(TAVRIN_SOURCE_DIR) +
                                                                u"/../shared/corpus"_s));
    QFile answers(corpus.filePath(u"csv.jsonl"_s));
    if (!answers.open(QIODevice::ReadOnly)) {
        qWarning("No corpus at %s: nothing was compared.", qPrintable(corpus.path()));
        return;
    }
    while (!answers.atEnd()) {
        const QJsonObject answer = QJsonDocument::fromJson(answers.readLine()).object();
        const QString file = answer.value("file"_L1).toString();
        if (!answer.contains("unspecified"_L1)) {
            QTest::newRow(qPrintable(file))
                << corpus.filePath(u"csv/"_s + file) << answer.value("expect"_L1);
        }
    }
}

void TestCsvCorpus::tableIsAsExpected()
{
    QFETCH(QString, path);
    QFETCH(QJsonValue, rows);
    QString problem;
    const TStringTablePtr table = rowsWithContentsOfCSVFile(path, &problem);
    QCOMPARE(problem.isEmpty(), table != nullptr);
    QVERIFY2(toJson(table) == rows, qPrintable(problem));
}

QTEST_GUILESS_MAIN(TestCsvCorpus)
#include "tst_csvcorpus.moc"
