// SPDX-License-Identifier: GPL-3.0-or-later
#include "metadata/TCSVAggregator.h"

#include "commonprocs/ByteNames.h"
#include "commonprocs/easyfile.h"

#include <QFile>
#include <QHash>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr char16_t kComma = u',';
constexpr qsizetype kLongestShared = 64; ///< longer fields seldom repeat

/// A file that tells how far it was read, and reads no further when nobody wants it.
class ReportingFile : public QFile
{
public:
    explicit ReportingFile(const TCSVProgress &progress)
        : m_progress(progress)
    {
    }
    bool isGivenUp() const { return m_isGivenUp; }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        const qint64 count = QFile::readData(data, maxSize);
        m_read += std::max<qint64>(count, 0);
        m_isGivenUp = m_isGivenUp || (m_progress && !m_progress(part()));
        return m_isGivenUp ? -1 : count;
    }

private:
    double part() const
    {
        const auto whole = static_cast<double>(std::max<qint64>(size(), 1));
        return std::min(static_cast<double>(m_read) / whole, 1.0);
    }

    const TCSVProgress &m_progress;
    qint64 m_read = 0;
    bool m_isGivenUp = false;
};

/// Opens for reading; the reason why not when it cannot be.
QString openFile(const QString &path, QFile &file)
{
    const int descriptor = open(ByteNames::toBytes(path).constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return textForErrno(errno);
    struct stat status = {};
    if (fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode)) {
        close(descriptor);
        return textForErrno(EISDIR);
    }
    file.open(descriptor, QIODevice::ReadOnly | QIODevice::Unbuffered,
              QFileDevice::AutoCloseHandle);
    return {};
}

QString forPeople(const TCSVError &error)
{
    if (error.code != TCSVError::kUnexpectedDelimiter)
        return error.text;
    return u"%1 (row %2)"_s.arg(error.text, QString::number(error.record));
}

} // namespace

void TCSVAggregator::parserDidBeginDocument(TCSVParser &)
{
    m_lines = newStringTable();
    m_error.reset();
    m_cells = 0;
}

void TCSVAggregator::parserDidBeginLine(TCSVParser &, qsizetype)
{
    m_line = {};
    if (!m_lines->empty())
        m_line.reserve(m_lines->back().size());
}

void TCSVAggregator::parserDidReadField(TCSVParser &parser, QStringView field, qsizetype)
{
    m_line.append(shared(field));
    if (++m_cells > kMaxCells)
        parser.fail(TCSVError::kTooLarge, u"The table has more than 50 million cells."_s);
}

void TCSVAggregator::parserDidEndLine(TCSVParser &, qsizetype)
{
    m_lines->push_back(std::exchange(m_line, {}));
}

void TCSVAggregator::parserDidFailWithError(TCSVParser &, const TCSVError &error)
{
    m_lines.reset();
    m_error = error;
}

QString TCSVAggregator::shared(QStringView field)
{
    if (field.size() > kLongestShared)
        return field.toString();
    QString &recent = m_recent[qHash(field) % m_recent.size()];
    if (recent.isNull() || recent != field)
        recent = field.toString();
    return recent;
}

TCSVContents contentsOfCSVFile(const QString &path, const TCSVProgress &progress)
{
    TCSVContents contents;
    ReportingFile file(progress);
    contents.problem = openFile(path, file);
    if (contents.problem.isEmpty() && file.size() > TCSVStream::kMaxBytes)
        contents.problem = TCSVStream::tooLargeText();
    if (!contents.problem.isEmpty())
        return contents;
    TCSVStream stream(file);
    contents.encoding = stream.encoding();
    TCSVParser parser(&stream, kComma);
    TCSVAggregator aggregator;
    parser.setDelegate(&aggregator);
    parser.parse();
    contents.rows = aggregator.lines();
    contents.end = parser.end();
    if (aggregator.error() && !file.isGivenUp())
        contents.problem = forPeople(*aggregator.error());
    return contents;
}

TStringTablePtr rowsWithContentsOfCSVFile(const QString &path, QString *problem)
{
    TCSVContents contents = contentsOfCSVFile(path);
    if (problem != nullptr)
        *problem = contents.problem;
    return contents.rows;
}
