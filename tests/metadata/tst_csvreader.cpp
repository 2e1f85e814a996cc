// SPDX-License-Identifier: GPL-3.0-or-later
#include "metadata/TCSVAggregator.h"
#include "metadata/TCSVParser.h"
#include "settings/logging.h"
#include "support/Table.h"
#include "support/TemporaryTree.h"

#include <QBuffer>
#include <QStringEncoder>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

using Rows = QList<QStringList>;
using Encoding = TCSVStream::Encoding;

/// Reads from memory with the given delimiter; null when there is no table.
TStringTablePtr read(QByteArray bytes, QString *error = nullptr, char16_t delimiter = u',')
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    TCSVStream stream(buffer);
    TCSVParser parser(&stream, delimiter);
    TCSVAggregator aggregator;
    parser.setDelegate(&aggregator);
    parser.parse();
    if (error != nullptr)
        *error = aggregator.error() ? aggregator.error()->text : QString();
    return aggregator.lines();
}

Rows rowsOf(const TStringTablePtr &table)
{
    return table ? Rows(table->begin(), table->end()) : Rows();
}

/// Writes down every event as it comes.
class Recorder : public TCSVParserDelegate
{
public:
    void parserDidBeginDocument(TCSVParser &) override { m_events << u"document"_s; }
    void parserDidBeginLine(TCSVParser &, qsizetype record) override
    {
        m_events << u"line %1"_s.arg(record);
    }
    void parserDidReadField(TCSVParser &, QStringView field, qsizetype index) override
    {
        m_events << u"%1 %2"_s.arg(index).arg(field);
    }
    void parserDidEndLine(TCSVParser &, qsizetype record) override
    {
        m_events << u"end %1"_s.arg(record);
    }
    void parserDidEndDocument(TCSVParser &) override { m_events << u"done"_s; }
    void parserDidFailWithError(TCSVParser &, const TCSVError &error) override
    {
        m_events << u"error %1 in %2"_s.arg(error.code).arg(error.record);
    }
    const QStringList &events() const { return m_events; }

private:
    QStringList m_events;
};

QByteArray operator""_b(const char *text, size_t size)
{
    return {text, static_cast<qsizetype>(size)};
}

} // namespace

Q_DECLARE_METATYPE(TCSVStream::Encoding)

class TestCsvReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { setLogSink({}); }

    void textBecomesRows_data()
    {
        Table<QByteArray, Rows>("text", "rows");
        const auto row = [](const char *name, const QByteArray &text, const Rows &rows) {
            QTest::newRow(name) << text << rows;
        };
        const QString none = u""_s;
        row("empty", "", {{none}});
        row("one cell", "a", {{u"a"_s}});
        row("blanks stay", " a , b ", {{u" a "_s, u" b "_s}});
        row("empty cells", ",", {{none, none}});
        row("last cell empty", "a,", {{u"a"_s, none}});
        row("final break", "a\n", {{u"a"_s}, {none}});
        row("only a break", "\n", {{none}, {none}});
        row("leading blank lines", "\r\n\r\na", {{none}, {u"a"_s}});
        row("blank lines vanish", "a\n\n\r\n\rb", {{u"a"_s}, {u"b"_s}});
        row("every kind of break",
            "a\nb\x0b"
            "c\fd\re\xC2\x85"
            "f\xE2\x80\xA8g\xE2\x80\xA9h",
            {{u"a"_s}, {u"b"_s}, {u"c"_s}, {u"d"_s}, {u"e"_s}, {u"f"_s}, {u"g"_s}, {u"h"_s}});
        row("ragged", "a\nb,c,d\ne,f", {{u"a"_s}, {u"b"_s, u"c"_s, u"d"_s}, {u"e"_s, u"f"_s}});
        row("quotes stay", "\"a\",b", {{u"\"a\""_s, u"b"_s}});
        row("doubled quotes stay", "\"a\"\"b\"", {{u"\"a\"\"b\""_s}});
        row("only quotes", "\"\",\"\"\"\"", {{u"\"\""_s, u"\"\"\"\""_s}});
        row("quoted break and comma", "\"a\r\n,b\",c", {{u"\"a\r\n,b\""_s, u"c"_s}});
        row("unclosed", "x\na,\"b\nc", {{u"x"_s}, {u"a"_s}});
        row("unclosed at once", "\"", {{}});
        row("unclosed after doubled", "\"\"\"", {{}});
        row("NUL ends", "a\0b,c"_b, {{u"a"_s}});
        row("NUL ends a quoted one", "a,\"b\0\""_b, {{u"a"_s}});
        row("octothorpe is text", "#a,b#", {{u"#a"_s, u"b#"_s}});
        row("beyond the BMP", "\xF0\x9F\x98\x80,\xE2\x82\xAC", {{u"\U0001F600"_s, u"€"_s}});
    }

    void textBecomesRows()
    {
        QFETCH(QByteArray, text);
        const TStringTablePtr table = read(text);
        QVERIFY(table);
        QTEST(rowsOf(table), "rows");
    }

    void otherDelimiters()
    {
        QCOMPARE(rowsOf(read("a,b;\"c;d\"\n", nullptr, u';')),
                 Rows({{u"a,b"_s, u"\"c;d\""_s}, {u""_s}}));
    }

    void malformedTextHasNoRows_data()
    {
        const Table<QByteArray, QString> row("text", "error");
        row("quote after a blank", "a\nb, \"c\"\nd"_b,
            u"Unexpected delimiter. Expected ',' (0x2C), but got '\"' (0x22)");
        row("text after a quote", "\"a\"b"_b,
            u"Unexpected delimiter. Expected ',' (0x2C), but got 'b' (0x62)");
        row("tab after a quote", "\"a\"\t"_b,
            u"Unexpected delimiter. Expected ',' (0x2C), but got '\t' (0x9)");
        row("quote in a text", "a%1\"b"_b,
            u"Unexpected delimiter. Expected ',' (0x2C), but got '\"' (0x22)");
        row("percent sign", "\"a\"%2"_b,
            u"Unexpected delimiter. Expected ',' (0x2C), but got '%' (0x25)");
    }

    void malformedTextHasNoRows()
    {
        QFETCH(QByteArray, text);
        QString error;
        QVERIFY(!read(text, &error));
        QTEST(error, "error");
    }

    void encodings_data()
    {
        Table<QByteArray, Encoding, QString>("bytes", "encoding", "cell");
        const QString text = u"é€\U0001F600"_s;
        const QByteArray utf8 = text.toUtf8();
        const auto encoded = [&text](QStringConverter::Encoding encoding) {
            return QByteArray(QStringEncoder(encoding)(text));
        };
        const auto row = [](const char *name, const QByteArray &bytes, Encoding encoding,
                            const QString &cell) {
            QTest::newRow(name) << bytes << encoding << cell;
        };
        row("UTF-8", utf8, Encoding::Utf8, text);
        row("UTF-8 with mark", "\xEF\xBB\xBF" + utf8, Encoding::Utf8, text);
        row("only the first mark goes", "\xEF\xBB\xBF\xEF\xBB\xBF", Encoding::Utf8, u"\uFEFF"_s);
        row("UTF-16LE", "\xFF\xFE" + encoded(QStringConverter::Utf16LE), Encoding::Utf16LE, text);
        row("UTF-16BE", "\xFE\xFF" + encoded(QStringConverter::Utf16BE), Encoding::Utf16BE, text);
        row("UTF-16 of two bytes", "\xFF\xFE", Encoding::Utf16LE, u""_s);
        row("half a pair in UTF-16", "\xFE\xFF\xD8\x3D\0a"_b, Encoding::Utf16BE,
            QString(QChar(0xD83D)) + 'a'_L1);
        row("UTF-32LE", "\xFF\xFE\0\0"_b + encoded(QStringConverter::Utf32LE), Encoding::Utf32LE,
            text);
        row("UTF-32BE", "\0\0\xFE\xFF"_b + encoded(QStringConverter::Utf32BE), Encoding::Utf32BE,
            text);
        row("ISO-2022-KR",
            "\x1B$)Ca\x0E\x30\x21\x31\x40\x0F"
            "b",
            Encoding::Iso2022Kr, u"a가굼b"_s);
        row("Korean signs and a second designator", "\x1B$)C\x1B$)C\x0E!$!*\x0F\x0E\x0F",
            Encoding::Iso2022Kr, u"·―"_s);
        row("Korean over the end of the first block",
            "\x1B$)C" + QByteArray(505, 'x') + "\x0E\x30\x21\x31\x40\x1B$)C\x0Fy",
            Encoding::Iso2022Kr, QString(505, 'x'_L1) + u"가굼y"_s);
        row("Korean designator over the end of the block",
            "\x1B$)C" + QByteArray(506, 'x') + "\x1B$)Cy", Encoding::Iso2022Kr,
            QString(506, 'x'_L1) + 'y'_L1);
        row("Mac OS Roman", "caf\x8E \xDB\xF0 and so on", Encoding::MacRoman,
            u"café €\uF8FF and so on"_s);
        row("character cut by the first block", QByteArray(511, 'x') + utf8, Encoding::Utf8,
            QString(511, 'x'_L1) + text);
        row("bad byte before the last three of the block", QByteArray(508, 'x') + "\xE9xxxxx",
            Encoding::MacRoman, QString(508, 'x'_L1) + u"Èxxxxx"_s);
    }

    void encodings()
    {
        QFETCH(QByteArray, bytes);
        setLogSink([](const QString &) {});
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::ReadOnly);
        QTEST(TCSVStream(buffer).encoding(), "encoding");
        QFETCH(QString, cell);
        QCOMPARE(rowsOf(read(bytes)), Rows({{cell}}));
    }

    void undecodableTextIsRefused_data()
    {
        const Table<QByteArray, QString> row("bytes", "where");
        row("after the first block", QByteArray(600, 'x') + "\xE9,b", u"number 601.");
        row("across two blocks", QByteArray(512 + 65536 - 1, 'x') + "\xC3x", u"number 66048.");
        row("character cut at the end", "abcdef\xE2\x82"_b, u"number 7.");
        row("odd UTF-16",
            "\xFF\xFE"
            "a\0b"_b,
            u"number 5.");
        row("half a pair in UTF-32", "\xFF\xFE\0\0\0\xD8\0\0"_b, u"number 5.");
        row("Korean with an eighth bit", "\x1B$)Ca\xB0\xA1"_b, u"ISO-2022-KR");
        row("half a Korean character", "\x1B$)C\x0E\x30\n"_b, u"ISO-2022-KR");
        row("Korean cut at the end", "\x1B$)C\x0E\x30"_b, u"ISO-2022-KR");
        row("no such Korean character", "\x1B$)C\x0E\x2D\x21"_b, u"ISO-2022-KR");
        row("cut UTF-32", "\xFF\xFE\0\0a\0\0\0b"_b, u"number 9.");
    }

    void undecodableTextIsRefused()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, where);
        QString error;
        QVERIFY(!read(bytes, &error));
        QVERIFY2(error.contains(where), qPrintable(error));
    }

    void whatStandsBeforeBadBytesDecides()
    {
        const QByteArray bad = QByteArray(600, 'y') + '\xFF';
        QCOMPARE(rowsOf(read("a,b\0"_b + bad)), Rows({{u"a"_s, u"b"_s}}));
        QCOMPARE(rowsOf(read(QByteArray(600, 'x') + ",b\0\xFF"_b)),
                 Rows({{QString(600, 'x'_L1), u"b"_s}}));
        QString error;
        QVERIFY(!read("a\n\"b\"c" + bad, &error));
        QVERIFY2(error.startsWith("Unexpected delimiter."_L1), qPrintable(error));
    }

    void macRomanIsAnnounced()
    {
        QStringList lines;
        setLogSink([&lines](const QString &line) { lines << line; });
        read("plain");
        QVERIFY(lines.isEmpty());
        read("caf\x8E and so on");
        QCOMPARE(lines, {u"unable to determine stream encoding; assuming MacOSRoman"_s});
    }

    void blocksMayCutAnything()
    {
        // Shifts quotes, breaks, commas and characters of several bytes over the ends of the
        // blocks.
        const QByteArray record = "\"\"\"é\"\"\r\n,\",\U0001F600,\"\"\r\n";
        QByteArray body;
        while (body.size() < 200'000)
            body += record;
        const QStringList row{u"\"\"\"é\"\"\r\n,\""_s, u"\U0001F600"_s, u"\"\""_s};
        for (int shift = 0; shift < record.size(); ++shift) {
            const Rows rows = rowsOf(read(QByteArray(shift, 'x') + '\n' + body));
            QCOMPARE(rows.size(), body.size() / record.size() + 2);
            QVERIFY2(rows.count(row) == rows.size() - 2, qPrintable(QString::number(shift)));
        }
    }

    void eventsComeInOrder()
    {
        QByteArray text = "a,b\nc\"";
        QBuffer buffer(&text);
        buffer.open(QIODevice::ReadOnly);
        TCSVStream stream(buffer);
        TCSVParser parser(&stream, u',');
        Recorder recorder;
        parser.setDelegate(&recorder);
        parser.parse();
        QCOMPARE(recorder.events(),
                 QStringList({u"document"_s, u"line 1"_s, u"0 a"_s, u"1 b"_s, u"end 1"_s,
                              u"line 2"_s, u"0 c"_s, u"end 2"_s, u"error 1 in 2"_s}));
    }

    void delegateMayEndParsing()
    {
        struct Limited : Recorder
        {
            void parserDidReadField(TCSVParser &parser, QStringView field, qsizetype index) override
            {
                Recorder::parserDidReadField(parser, field, index);
                parser.fail(TCSVError::kTooLarge, u"enough"_s);
            }
        };
        QByteArray text = "a\nb\nc";
        QBuffer buffer(&text);
        buffer.open(QIODevice::ReadOnly);
        TCSVStream stream(buffer);
        TCSVParser parser(&stream, u',');
        Limited limited;
        parser.setDelegate(&limited);
        parser.parse();
        QCOMPARE(limited.events(), QStringList({u"document"_s, u"line 1"_s, u"0 a"_s, u"end 1"_s,
                                                u"error 3 in 1"_s}));
    }

    void impossibleParsersThrow_data()
    {
        const Table<bool, char16_t, QByteArray> row("withStream", "delimiter", "text");
        const QByteArray newline = "The field delimiter may not be a newline";
        row("stream", false, u',', QByteArray("Invalid parameter not satisfying: stream"));
        row("zero", true, u'\0', QByteArray("Invalid parameter not satisfying: delimiter"));
        row("line feed", true, u'\n', newline);
        row("vertical tab", true, u'\v', newline);
        row("next line", true, u'\u0085', newline);
        row("paragraph", true, u'\u2029', newline);
        row("quote", true, u'"', QByteArray("The field delimiter may not be a double quote"));
        row("octothorpe", true, u'#', QByteArray("The field delimiter may not be an octothorpe"));
    }

    void impossibleParsersThrow()
    {
        QFETCH(bool, withStream);
        QFETCH(char16_t, delimiter);
        QBuffer buffer;
        buffer.open(QIODevice::ReadOnly);
        TCSVStream stream(buffer);
        QByteArray thrown;
        try {
            const TCSVParser parser(withStream ? &stream : nullptr, delimiter);
        } catch (const std::logic_error &error) {
            thrown = error.what();
        }
        QTEST(thrown, "text");
    }

    void repeatedFieldsShareTheirText()
    {
        const Rows rows = rowsOf(read("Berlin,x\ny,Berlin"));
        QCOMPARE(rows[0][0], u"Berlin"_s);
        QCOMPARE(rows[0][0].constData(), rows[1][1].constData());
    }

    void filesAreRead_data()
    {
        const Table<QByteArray, Rows, QString> row("content", "rows", "problem");
        row("table", "a,b\nc"_b, Rows({{u"a"_s, u"b"_s}, {u"c"_s}}), QString());
        row("empty", QByteArray(""), Rows({{u""_s}}), QString());
        row("malformed", "a\n\"b\"c"_b, Rows(),
            u"Unexpected delimiter. Expected ',' (0x2C), but got 'c' (0x63) (row 2)");
    }

    void filesAreRead()
    {
        QFETCH(QByteArray, content);
        const TemporaryTree tree;
        QString problem = u"old"_s;
        QTEST(rowsOf(rowsWithContentsOfCSVFile(tree.file(u"t.csv"_s, content), &problem)), "rows");
        QTEST(problem, "problem");

        QVERIFY(!rowsWithContentsOfCSVFile(tree.path(u"missing.csv"_s), &problem));
        QVERIFY(!problem.isEmpty());
        problem.clear();
        QVERIFY(!rowsWithContentsOfCSVFile(tree.folder(u"folder.csv"_s), &problem));
        QVERIFY(!problem.isEmpty());
    }

    void hugeFileIsRefused()
    {
        const TemporaryTree tree;
        QFile file(tree.file(u"huge.csv"_s));
        QVERIFY(file.resize(qint64{1} << 31)); // takes no space
        QString problem;
        QVERIFY(!rowsWithContentsOfCSVFile(file.fileName(), &problem));
        QVERIFY2(problem.contains("2 GiB"_L1), qPrintable(problem));
    }

    void readingIsGivenUp_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("rows") << QByteArray("a,b\n").repeated(200'000);
        QTest::newRow("a field without an end") << QByteArray(800'000, 'a').prepend('"');
    }
    void readingIsGivenUp()
    {
        QFETCH(QByteArray, content);
        const TemporaryTree tree;
        double reached = 0;
        const TCSVContents contents =
            contentsOfCSVFile(tree.file(u"t.csv"_s, content), [&reached](double part) {
                const bool hasGoneOn = part > reached;
                reached = part;
                return hasGoneOn && part < 0.5;
            });
        QVERIFY(!contents.rows);
        QCOMPARE(contents.problem, QString());
        QVERIFY(reached >= 0.5 && reached < 0.7);
    }

    void nameNeedNotBeUtf8()
    {
        const TemporaryTree tree;
        tree.rawFile("caf\xE9.csv", "a");
        const QString path = tree.path() + u"/caf"_s + QChar(0xDCE9) + u".csv"_s;
        QCOMPARE(rowsOf(rowsWithContentsOfCSVFile(path, nullptr)), Rows({{u"a"_s}}));
    }
};

QTEST_GUILESS_MAIN(TestCsvReader)
#include "tst_csvreader.moc"
