// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TDocumentDrag.h"

#include "document/TErrorLog.h"
#include "document/TRuleKinds.h"

#include <QBuffer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace TDocumentDrag {

namespace {

constexpr QLatin1StringView kBase{"com.zel.tavrin"};
constexpr QLatin1StringView kTypeFormat{"%@-%@"};
constexpr QLatin1StringView kUriList{"text/uri-list"};
constexpr char kRowSeparator = ',';

QString typeNamed(QLatin1StringView name)
{
    return formatted(kTypeFormat, {kBase, name});
}

QByteArray archiveOf(const TRuleList &rules)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return TRuleKinds::archiveRules(rules, buffer) ? buffer.data() : QByteArray();
}

/// Dragged rules. Their archive is made when another program asks for it: a large table takes a
/// while, and most rules are dropped where they came from.
class RulesData : public QMimeData
{
public:
    explicit RulesData(const TRuleList &rules)
        : m_rules(TRuleKinds::copyArrayViaEncode(rules))
    {
    }
    TRuleList rules() const { return TRuleKinds::copyArrayViaEncode(m_rules); }
    QStringList formats() const override { return QMimeData::formats() + QStringList(rulesType()); }
    bool hasFormat(const QString &type) const override { return formats().contains(type); }

protected:
    QVariant retrieveData(const QString &type, QMetaType preferred) const override
    {
        return type == rulesType() ? QVariant(archiveOf(m_rules))
                                   : QMimeData::retrieveData(type, preferred);
    }

private:
    const TRuleList m_rules;
};

QByteArray archiveOf(const std::vector<qsizetype> &rows)
{
    QByteArray archive;
    for (const qsizetype row : rows) {
        if (!archive.isEmpty())
            archive += kRowSeparator;
        archive += QByteArray::number(row);
    }
    return archive;
}

} // namespace

QString baseType()
{
    return kBase;
}

QString rulesType()
{
    return typeNamed("rules"_L1);
}

QString fileTableType()
{
    return typeNamed("fileTable"_L1);
}

QString fileObjectsType()
{
    return typeNamed("fileObjects"_L1);
}

QString indexesType()
{
    return typeNamed("indexes"_L1);
}

std::unique_ptr<QMimeData> dataForTile(const QString &identifier)
{
    const TRulePtr rule = TRuleKinds::ruleForIdentifier(identifier);
    return rule ? dataForRules({rule}) : nullptr;
}

std::unique_ptr<QMimeData> dataForRules(const TRuleList &rules)
{
    return std::make_unique<RulesData>(rules);
}

std::unique_ptr<QMimeData> dataForRulesAt(const TRuleList &all, const std::vector<qsizetype> &rows,
                                          const QString &documentUUID)
{
    TRuleList dragged;
    for (const qsizetype row : rows)
        dragged.push_back(all[static_cast<std::size_t>(row)]);
    auto data = dataForRules(dragged);
    data->setData(baseType(), documentUUID.toUtf8());
    data->setData(indexesType(), archiveOf(rows));
    return data;
}

std::unique_ptr<QMimeData> dataForFileRows(const std::vector<qsizetype> &rows,
                                           const QString &documentUUID)
{
    auto data = std::make_unique<QMimeData>();
    data->setData(baseType(), documentUUID.toUtf8());
    data->setData(fileTableType(), documentUUID.toUtf8());
    data->setData(indexesType(), archiveOf(rows));
    return data;
}

QString documentUUID(const QMimeData &data)
{
    return QString::fromUtf8(data.data(baseType()));
}

std::vector<qsizetype> rows(const QMimeData &data)
{
    const QByteArray archive = data.data(indexesType());
    std::vector<qsizetype> result;
    if (archive.isEmpty())
        return result;
    for (const QByteArray &number : archive.split(kRowSeparator)) {
        bool isNumber = false;
        const qlonglong row = number.toLongLong(&isNumber);
        if (!isNumber || row < 0)
            return {};
        result.push_back(row);
    }
    std::sort(result.begin(), result.end());
    result.erase(std::unique(result.begin(), result.end()), result.end());
    return result;
}

TRuleList rules(const QMimeData &data)
{
    if (const auto *own = dynamic_cast<const RulesData *>(&data))
        return own->rules();
    TResult<TRuleList> decoded = TRuleKinds::unarchiveRules(data.data(rulesType()));
    return decoded ? std::move(decoded).value() : TRuleList();
}

TFileURLs fileURLs(const QMimeData &data)
{
    TFileURLs urls;
    for (const QByteArray &line : data.data(kUriList).split('\n')) {
        const QByteArray text = line.trimmed();
        if (text.isEmpty() || text.startsWith('#'))
            continue;
        const TFileURL url = TFileURL::fromString(QString::fromUtf8(text));
        if (url.isValid())
            urls += url;
    }
    return urls;
}

} // namespace TDocumentDrag
