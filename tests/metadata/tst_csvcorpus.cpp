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

    void tablesAreAsExpected()
    {
        const QDir corpus(qEnvironmentVariable(
            "TAVRIN_CORPUS", QString::fromUtf8(TAVRIN_SOURCE_DIR) + u"/../shared/corpus"_s));
        QFile answers(corpus.filePath(u"csv.jsonl"_s));
        if (!answers.open(QIODevice::ReadOnly))
            qWarning("No corpus at %s: nothing was compared.", qPrintable(corpus.path()));
        while (answers.isOpen() && !answers.atEnd()) {
            const QJsonObject answer = QJsonDocument::fromJson(answers.readLine()).object();
            if (answer.contains("unspecified"_L1))
                continue;
            const QString path = corpus.filePath(u"csv/"_s + answer.value("file"_L1).toString());
            QString problem;
            const TStringTablePtr table = rowsWithContentsOfCSVFile(path, &problem);
            QVERIFY2(problem.isEmpty() == (table != nullptr), qPrintable(path));
            QVERIFY2(toJson(table) == answer.value("expect"_L1), qPrintable(path + problem));
        }
    }
};

QTEST_GUILESS_MAIN(TestCsvCorpus)
#include "tst_csvcorpus.moc"
