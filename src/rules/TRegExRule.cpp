// SPDX-License-Identifier: GPL-3.0-or-later
#include "rules/TRegExRule.h"

#include "rules/TRuleFields.h"

using namespace Qt::StringLiterals;

namespace {

constexpr const char *kArchiveClass[] = {"TRegExRule", "TRuleModel", "NSObject"};
constexpr auto kRegArray = "regArray"_L1;
constexpr auto kSource = "source"_L1;
constexpr auto kReplaceAll = "replaceAll"_L1;

constexpr QStringView kIcon = u"regEx_tag";
constexpr QStringView kTileName = u"(RegEx)";
constexpr QStringView kEditor = u"TEditRegExRuleViewController";
constexpr QStringView kNoPairs = u"???RegEx???";

TRegExPairsPtr pairsFromValue(const QVariant &value)
{
    if (value.canConvert<TRegExPairsPtr>())
        return value.value<TRegExPairsPtr>();
    auto pairs = std::make_shared<TRegExPairs>();
    for (const QVariant &pair : value.toList())
        pairs->emplace_back(std::make_shared<TRegExMatchReplace>())->setProperties(pair.toMap());
    return pairs;
}

} // namespace

TRegExRule::TRegExRule()
    : m_regArray(std::make_shared<TRegExPairs>())
{
    setThePreview(TImage(kIcon.toString()));
    TRegExRule::updatePreview();
}

TRegExRule::TRegExRule(Decoding tag)
    : TRuleModel(tag)
{
}

std::shared_ptr<TRegExRule> TRegExRule::decoding()
{
    return std::make_shared<TRegExRule>(Decoding{});
}

QString TRegExRule::processWithFileObject(TFileObject &file, TErrorLog *errorLog, TRuleDict &dict)
{
    if (!m_regArray || m_regArray->empty())
        return kNoPairs.toString();
    compileChangedPairs();
    QString text = m_source == 0 ? file.fileName() : dict.result;
    RegexReplacer::Budget budget = RegexReplacer::Budget::after(m_exceededNames);
    for (const RegexReplacer &replacer : m_compiled)
        text = replacer.replaceAll(text, budget);
    if (budget.exceeded) {
        ++m_exceededNames;
        dict.tookTooLong = true;
        file.logErrorType(TErrorTypes::kCritical, RegexReplacer::kTookTooLong.toString(), errorLog);
    }
    return text.isNull() ? u""_s : text;
}

bool TRegExRule::postProcessResult(QString &result, TErrorLog * /*errorLog*/, TRuleDict &dict)
{
    if (m_source < 1 || m_replaceAll == 0 || dict.partial.isNull())
        return false;
    result = dict.partial;
    return true;
}

void TRegExRule::compileChangedPairs()
{
    m_compiled.resize(m_regArray->size());
    for (std::size_t i = 0; i < m_compiled.size(); ++i) {
        const TRegExMatchReplace &pair = *(*m_regArray)[i];
        RegexReplacer &compiled = m_compiled[i];
        if (compiled.pattern() == pair.match && compiled.replacement() == pair.replace)
            continue;
        compiled = RegexReplacer(pair.match, pair.replace);
        m_exceededNames = 0;
    }
}

QVariantMap TRegExRule::properties() const
{
    QVariantMap map;
    if (m_regArray)
        map.insert(kRegArray, QVariant::fromValue(m_regArray));
    TRuleFields::insert(map, kSource, m_source);
    TRuleFields::insert(map, kReplaceAll, m_replaceAll);
    return map;
}

void TRegExRule::setProperties(const QVariantMap &properties)
{
    if (const auto pairs = properties.constFind(kRegArray); pairs != properties.cend())
        m_regArray = pairsFromValue(*pairs);
    TRuleFields::setFromProperties(properties, kSource, m_source);
    TRuleFields::setFromProperties(properties, kReplaceAll, m_replaceAll);
}

std::shared_ptr<TRuleModel> TRegExRule::newInstance() const
{
    return std::make_shared<TRegExRule>();
}

TArchiveClass TRegExRule::archiveClass() const
{
    return kArchiveClass;
}

void TRegExRule::encodeWithCoder(TEncoder &coder) const
{
    TRuleModel::encodeWithCoder(coder);
    if (m_regArray) {
        coder.encodeArray(
            kRegArray, static_cast<qsizetype>(m_regArray->size()),
            [](qsizetype) { return TRegExMatchReplace::archiveClass(); },
            [this](qsizetype i, TEncoder &element) {
                (*m_regArray)[static_cast<std::size_t>(i)]->encodeWithCoder(element);
            });
    }
    coder.encodeInteger(kSource, m_source);
    coder.encodeInteger(kReplaceAll, m_replaceAll);
}

void TRegExRule::initWithCoder(const TDecoder &coder)
{
    TRuleModel::initWithCoder(coder);
    auto pairs = std::make_shared<TRegExPairs>();
    const bool present = coder.decodeArray(kRegArray, [&pairs](const TDecoder &element) {
        pairs->emplace_back(std::make_shared<TRegExMatchReplace>())->initWithCoder(element);
    });
    m_regArray = present ? std::move(pairs) : nullptr;
    m_source = coder.decodeInteger(kSource);
    m_replaceAll = coder.decodeInteger(kReplaceAll);
    updatePreview();
}

void TRegExRule::updatePreview()
{
    setName(kTileName.toString());
}

QString TRegExRule::editingViewController() const
{
    return kEditor.toString();
}
