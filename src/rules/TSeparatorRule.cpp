// SPDX-License-Identifier: GPL-3.0-or-later
#include "rules/TSeparatorRule.h"

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

constexpr const char *kArchiveClass[] = {"TSeparatorRule", "TTextRule", "TRuleModel", "NSObject"};
constexpr QStringView kIcon = u"separator_tag_white";
constexpr QStringView kEditor = u"TEditSeparatorRuleViewController";
constexpr QStringView kSeparators = u" _-*.!(){}";
constexpr QStringView kBlank = u" ";
constexpr QStringView kBlankTile = u"\" \"";
constexpr const char *kOutOfRange = "The separator index is not between 0 and 9.";

} // namespace

TSeparatorRule::TSeparatorRule()
{
    setThePreview(TImage(kIcon.toString()));
    TSeparatorRule::updatePreview();
}

TSeparatorRule::TSeparatorRule(Decoding tag)
    : TTextRule(tag)
{
}

std::shared_ptr<TSeparatorRule> TSeparatorRule::decoding()
{
    return std::make_shared<TSeparatorRule>(Decoding{});
}

std::span<const TRuleField<TSeparatorRule>> TSeparatorRule::fields()
{
    static constexpr TRuleField<TSeparatorRule> kFields[] = {
        {"separatorIndex"_L1, &TSeparatorRule::m_separatorIndex}};
    return kFields;
}

QString TSeparatorRule::processWithFileObject(TFileObject & /*file*/, TErrorLog * /*errorLog*/)
{
    getSeparator();
    return theText();
}

QVariantMap TSeparatorRule::properties() const
{
    QVariantMap map = TTextRule::properties();
    TRuleFields::addProperties(fields(), *this, map);
    return map;
}

void TSeparatorRule::setProperties(const QVariantMap &properties)
{
    TTextRule::setProperties(properties);
    TRuleFields::setProperties(fields(), *this, properties);
}

std::shared_ptr<TRuleModel> TSeparatorRule::newInstance() const
{
    return std::make_shared<TSeparatorRule>();
}

TArchiveClass TSeparatorRule::archiveClass() const
{
    return kArchiveClass;
}

void TSeparatorRule::encodeWithCoder(TEncoder &coder) const
{
    TTextRule::encodeWithCoder(coder);
    TRuleFields::encodeFields(fields(), *this, coder);
}

void TSeparatorRule::initWithCoder(const TDecoder &coder)
{
    TTextRule::initWithCoder(coder);
    TRuleFields::decodeFields(fields(), *this, coder);
    updatePreview();
}

void TSeparatorRule::updatePreview()
{
    getSeparator();
    setName(theText() == kBlank ? kBlankTile.toString() : theText());
}

QString TSeparatorRule::editingViewController() const
{
    return kEditor.toString();
}

void TSeparatorRule::getSeparator()
{
    if (m_separatorIndex < 0 || m_separatorIndex >= kSeparators.size())
        throw std::out_of_range(kOutOfRange);
    setTheText(kSeparators.mid(m_separatorIndex, 1).toString());
}
