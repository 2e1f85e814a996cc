// SPDX-License-Identifier: GPL-3.0-or-later
#include "metadata/TCSVRule.h"

using namespace Qt::StringLiterals;

namespace {

constexpr const char *kArchiveClass[] = {"TCSVRule", "TRuleModel", "NSObject"};
constexpr auto kTheRows = "theRows"_L1;
constexpr QStringView kIcon = u"csv_tag";
constexpr QStringView kEditor = u"TEditCSVRuleViewController";
constexpr QStringView kDefaultText = u"(csv err)";
constexpr QStringView kNoDataTile = u"CSV:!!no Data !!";
constexpr auto kColumnTile = "CSV: Col(%ld)"_L1;

constexpr auto kNoTable = "No CSV loaded. Default text used. File: "_L1;
constexpr auto kNoRow = "CSV table: Row %ld does not exist. Default used. File: "_L1;
constexpr auto kNoColumn =
    "CSV table: Column %ld does not exist for row %ld. Default used. File: "_L1;

} // namespace

TCSVRule::TCSVRule()
    : m_wrap(true)
    , m_trimQuotes(true)
    , m_defaultText(kDefaultText.toString())
{
    setThePreview(TImage(kIcon.toString()));
    TCSVRule::updatePreview();
}

TCSVRule::TCSVRule(Decoding tag)
    : TRuleModel(tag)
{
}

std::shared_ptr<TCSVRule> TCSVRule::decoding()
{
    return std::make_shared<TCSVRule>(Decoding{});
}

std::span<const TRuleField<TCSVRule>> TCSVRule::fields()
{
    static constexpr TRuleField<TCSVRule> kFields[] = {
        {"defaultText"_L1, &TCSVRule::m_defaultText},
        {"skipFirst"_L1, &TCSVRule::m_skipFirst},
        {"wrap"_L1, &TCSVRule::m_wrap},
        {"trimQuotes"_L1, &TCSVRule::m_trimQuotes},
        {"useColumn"_L1, &TCSVRule::m_useColumn},
    };
    return kFields;
}

QString TCSVRule::withoutOuterQuotes(QStringView text)
{
    while (text.startsWith('"'_L1))
        text = text.sliced(1);
    while (text.endsWith('"'_L1))
        text.chop(1);
    return text.toString();
}

void TCSVRule::prepareToStart()
{
    m_globalCounter = 0;
}

QString TCSVRule::processWithFileObject(TFileObject &file, TErrorLog *errorLog,
                                        TRuleDict & /*dict*/)
{
    if (m_defaultText.isNull())
        m_defaultText = u""_s;
    const auto useDefault = [&](QLatin1StringView format, std::initializer_list<QString> values) {
        file.logErrorType(TErrorTypes::kWarning, file.withPath(formatted(format, values)),
                          errorLog);
        return m_defaultText;
    };
    if (!m_theRows)
        return useDefault(kNoTable, {});
    const quint64 row = rowForCounter();
    ++m_globalCounter;
    if (row >= m_theRows->size())
        return useDefault(kNoRow, {QString::number(row)});
    const QStringList &cells = (*m_theRows)[row];
    if (m_useColumn < 0 || m_useColumn >= cells.size()) {
        return useDefault(kNoColumn, {QString::number(m_useColumn), QString::number(row)});
    }
    const QString &text = cells[m_useColumn];
    return m_trimQuotes ? withoutOuterQuotes(text) : text;
}

/// The row of the next file, from 0; beyond the table when there is none. Wrapping never comes back
/// to the header, and does nothing when the table has no other row.
quint64 TCSVRule::rowForCounter() const
{
    const quint64 header = m_skipFirst ? 1 : 0;
    const quint64 rows = m_theRows->size();
    if (!m_wrap || rows <= header)
        return m_globalCounter + header;
    return m_globalCounter % (rows - header) + header;
}

QVariantMap TCSVRule::properties() const
{
    QVariantMap map = TRuleModel::properties();
    if (m_theRows)
        map.insert(kTheRows, QVariant::fromValue(m_theRows));
    TRuleFields::addProperties(fields(), *this, map);
    return map;
}

void TCSVRule::setProperties(const QVariantMap &properties)
{
    TRuleModel::setProperties(properties);
    const auto rows = properties.constFind(kTheRows);
    if (rows != properties.cend())
        m_theRows = rows->value<TStringTablePtr>();
    TRuleFields::setProperties(fields(), *this, properties);
    m_globalCounter = 0;
}

std::shared_ptr<TRuleModel> TCSVRule::newInstance() const
{
    return std::make_shared<TCSVRule>();
}

TArchiveClass TCSVRule::archiveClass() const
{
    return kArchiveClass;
}

void TCSVRule::encodeWithCoder(TEncoder &coder) const
{
    TRuleModel::encodeWithCoder(coder);
    if (m_theRows)
        coder.encodeTable(kTheRows, m_theRows);
    TRuleFields::encodeFields(fields(), *this, coder);
}

void TCSVRule::initWithCoder(const TDecoder &coder)
{
    TRuleModel::initWithCoder(coder);
    m_theRows = coder.decodeTable(kTheRows);
    TRuleFields::decodeFields(fields(), *this, coder);
    m_globalCounter = 0;
    updatePreview();
}

void TCSVRule::updatePreview()
{
    if (!m_theRows) {
        setName(kNoDataTile.toString());
        return;
    }
    const auto shown = static_cast<qint64>(static_cast<quint64>(m_useColumn) + 1); // may wrap
    setName(formatted(kColumnTile, {QString::number(shown)}));
}

QString TCSVRule::editingViewController() const
{
    return kEditor.toString();
}
