// SPDX-License-Identifier: GPL-3.0-or-later
#include "rules/TTextRule.h"

using namespace Qt::StringLiterals;

namespace {

constexpr const char *kArchiveClass[] = {"TTextRule", "TRuleModel", "NSObject"};
constexpr QStringView kIcon = u"text puzzle white";
constexpr QStringView kDefaultText = u"Tavrin";
constexpr QStringView kEditor = u"TEditTextRuleControllerViewController";
constexpr QStringView kEmptyText = u"Text constant is empty";

} // namespace

TTextRule::TTextRule()
    : m_theText(kDefaultText.toString())
{
    setThePreview(TImage(kIcon.toString()));
    TTextRule::updatePreview();
}

TTextRule::TTextRule(Decoding tag)
    : TRuleModel(tag)
{
}

std::shared_ptr<TTextRule> TTextRule::decoding()
{
    return std::make_shared<TTextRule>(Decoding{});
}

std::span<const TRuleField<TTextRule>> TTextRule::fields()
{
    static constexpr TRuleField<TTextRule> kFields[] = {{"theText"_L1, &TTextRule::m_theText}};
    return kFields;
}

QString TTextRule::processWithFileObject(TFileObject & /*file*/, TErrorLog *errorLog,
                                         TRuleDict & /*dict*/)
{
    if (m_theText.isEmpty() && errorLog != nullptr)
        errorLog->addErrorOfType(TErrorTypes::kWarning, kEmptyText.toString());
    return m_theText;
}

QVariantMap TTextRule::properties() const
{
    QVariantMap map = TRuleModel::properties();
    TRuleFields::addProperties(fields(), *this, map);
    return map;
}

void TTextRule::setProperties(const QVariantMap &properties)
{
    TRuleModel::setProperties(properties);
    TRuleFields::setProperties(fields(), *this, properties);
}

std::shared_ptr<TRuleModel> TTextRule::newInstance() const
{
    return std::make_shared<TTextRule>();
}

TArchiveClass TTextRule::archiveClass() const
{
    return kArchiveClass;
}

void TTextRule::encodeWithCoder(TEncoder &coder) const
{
    TRuleModel::encodeWithCoder(coder);
    TRuleFields::encodeFields(fields(), *this, coder);
}

void TTextRule::initWithCoder(const TDecoder &coder)
{
    TRuleModel::initWithCoder(coder);
    TRuleFields::decodeFields(fields(), *this, coder);
    updatePreview();
}

void TTextRule::updatePreview()
{
    setName(m_theText);
}

QString TTextRule::editingViewController() const
{
    return kEditor.toString();
}
