// SPDX-License-Identifier: GPL-3.0-or-later
#include "metadata/TCSVAggregator.h"
#include "metadata/TCSVParser.h"
#include "settings/logging.h"

#include <QBuffer>

#include <cstdint>
#include <cstdlib>

namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    setLogSink([](const QString &) {});
    return 0;
}

/// Any bytes are a table or a problem, and the cells are no longer than the file.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    TCSVStream stream(buffer);
    TCSVParser parser(&stream, u',');
    TCSVAggregator aggregator;
    parser.setDelegate(&aggregator);
    parser.parse();
    const TStringTablePtr lines = aggregator.lines();
    require((lines == nullptr) == aggregator.error().has_value());
    if (!lines)
        return 0;
    require(!lines->empty());
    qsizetype units = 0;
    for (const QStringList &line : *lines) {
        for (const QString &cell : line) {
            require(!cell.isNull());
            units += cell.size();
        }
    }
    require(units <= bytes.size());
    return 0;
}
