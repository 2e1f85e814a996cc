// SPDX-License-Identifier: GPL-3.0-or-later
#include "rules/TOriginalRule.h"

#include "commonprocs/StringAdditions.h"

using namespace Qt::StringLiterals;

namespace {

constexpr const char *kArchiveClass[] = {"TOriginalRule", "TDateRule", "TRuleModel", "NSObject"};
constexpr QStringView kIcon = u"file_tag";
constexpr QStringView kEditor = u"TEditOriginalViewController";
constexpr QStringView kUnknownProperty = u"Error - end reached";
constexpr QStringView kDefaultCharsToStrip = u":/\\";
constexpr QStringView kBlank = u" ";

constexpr QStringView kNameTile = u"(File Name)";
constexpr auto kFolderTile = "(Folder %ld up)"_L1;
constexpr QStringView kSizeTile = u"(File Size)";
constexpr QStringView kDateTile = u"(File Date)";
constexpr QStringView kExtensionTile = u"(.EXT)";

enum Property : qint64 { FileName, ParentFolder, FileSize, FileDate, Extension };
enum BlankHandling : qint64 { RemoveBlanks = 1, InsertBlanks = 2 };
enum CaseConversion : qint64 { UpperCase = 1, LowerCase = 2 };

struct SizeUnit
{
    quint64 divisor;
    QStringView name;
    QStringView fraction; ///< whole units only, so the decimals are always zeros
};

constexpr quint64 kKilo = 1024;
constexpr SizeUnit kUnits[] = {
    {1, u"B", u""},
    {kKilo, u"KB", u""},
    {kKilo * kKilo, u"MB", u".0"},
    {kKilo * kKilo * kKilo, u"GB", u".00"},
    {kKilo * kKilo * kKilo * kKilo, u"TB", u".000"},
};
constexpr qint64 kUnitCount = std::size(kUnits);

const SizeUnit &unitFor(qint64 format, quint64 size)
{
    if (format >= 1 && format <= kUnitCount)
        return kUnits[format - 1];
    // A size of exactly one terabyte still shows in gigabytes, unlike at the smaller steps.
    if (size > kUnits[4].divisor)
        return kUnits[4];
    for (qsizetype unit = 3; unit > 0; --unit) {
        if (size >= kUnits[unit].divisor)
            return kUnits[unit];
    }
    return kUnits[0];
}

/// The path without its last component, and that component; the root gives two empty texts.
QStringView takeLastComponent(QStringView &path)
{
    const qsizetype slash = path.lastIndexOf(u'/');
    const QStringView component = path.sliced(slash + 1);
    path = path.first(qMax<qsizetype>(slash, 0));
    return component;
}

/// Counts from 1, where the level counts from 0; the highest number wraps around.
QString folderTile(qint64 level)
{
    const auto steps = static_cast<qint64>(static_cast<quint64>(level) + 1);
    return formatted(kFolderTile, {QString::number(steps)});
}

} // namespace

TOriginalRule::TOriginalRule()
    : m_showSizeUnit(true)
    , m_separateUnit(true)
    , m_stringToReplace(u""_s)
    , m_stringToLookFor(u""_s)
    , m_caseSensitiveSearch(1)
    , m_charsToStrip(kDefaultCharsToStrip.toString())
    , m_whichDate(1)
{
    setThePreview(TImage(kIcon.toString()));
    TOriginalRule::updatePreview();
}

TOriginalRule::TOriginalRule(Decoding tag)
    : TDateRule(tag)
{
}

std::shared_ptr<TOriginalRule> TOriginalRule::decoding()
{
    return std::make_shared<TOriginalRule>(Decoding{});
}

std::span<const TRuleField<TOriginalRule>> TOriginalRule::fields()
{
    static constexpr TRuleField<TOriginalRule> kFields[] = {
        {"whichProperty"_L1, &TOriginalRule::m_whichProperty},
        {"sizeFormat"_L1, &TOriginalRule::m_sizeFormat},
        {"showSizeUnit"_L1, &TOriginalRule::m_showSizeUnit},
        {"separateUnit"_L1, &TOriginalRule::m_separateUnit},
        {"dropFromBeginning"_L1, &TOriginalRule::m_dropFromBeginning},
        {"dropFromEnd"_L1, &TOriginalRule::m_dropFromEnd},
        {"postprocessing"_L1, &TOriginalRule::m_postprocessing},
        {"caseConversion"_L1, &TOriginalRule::m_caseConversion},
        {"blankHandling"_L1, &TOriginalRule::m_blankHandling},
        {"caseSensitiveSearch"_L1, &TOriginalRule::m_caseSensitiveSearch},
        {"stringToReplace"_L1, &TOriginalRule::m_stringToReplace},
        {"stringToLookFor"_L1, &TOriginalRule::m_stringToLookFor},
        {"whichDate"_L1, &TOriginalRule::m_whichDate},
        {"parentLevel"_L1, &TOriginalRule::m_parentLevel},
        {"charsToStrip"_L1, &TOriginalRule::m_charsToStrip},
    };
    return kFields;
}

QString TOriginalRule::processWithFileObject(TFileObject &file, TErrorLog * /*errorLog*/,
                                             TRuleDict & /*dict*/)
{
    switch (m_whichProperty) {
    case FileName:
        return finished(edited(file.fileName(), true));
    case ParentFolder:
        return finished(edited(getParentFrom(file, m_parentLevel), false));
    case FileSize:
        return getFileSizeFrom(file);
    case FileDate:
        return finished(
            getDateFromDate(m_whichDate == 0 ? file.creationDate() : file.modificationDate()));
    case Extension:
        return finished(edited(file.extension(), true));
    default:
        return kUnknownProperty.toString();
    }
}

bool TOriginalRule::readsSizeOrDate() const
{
    return m_whichProperty == FileSize || m_whichProperty == FileDate;
}

QString TOriginalRule::edited(QString text, bool replace) const
{
    if (m_dropFromBeginning > 0)
        text = stringByDroppingFistNCharactes(text, m_dropFromBeginning);
    if (m_dropFromEnd > 0)
        text = stringByDroppingLastNCharactes(text, m_dropFromEnd);
    if (replace && !m_stringToLookFor.isEmpty()) {
        text = stringByReplacing(text, m_stringToLookFor, m_stringToReplace,
                                 m_caseSensitiveSearch == 0);
    }
    text = stringByRemovingCharacters(text, m_charsToStrip);
    if (m_blankHandling == RemoveBlanks)
        text.remove(kBlank.front());
    else if (m_blankHandling == InsertBlanks)
        text = insertBlankbeforeUpperCaseTransition(text);
    if (m_caseConversion == UpperCase)
        text = upperCased(text);
    else if (m_caseConversion == LowerCase)
        text = lowerCased(text);
    return text;
}

QString TOriginalRule::finished(QString text)
{
    handlePaddingBothSidesWith(text);
    handleMaxSizeFor(text);
    return text;
}

QString TOriginalRule::getParentFrom(const TFileObject &file, qint64 level)
{
    const TFileURL url = file.sourceURL();
    if (!url.isValid())
        return u""_s;
    QStringView path = url.folder()->path();
    QStringView name = takeLastComponent(path);
    if (name.isEmpty())
        return url.lastPathComponent();
    for (; level > 0 && !path.isEmpty(); --level)
        name = takeLastComponent(path);
    return name.toString();
}

QString TOriginalRule::getFileSizeFrom(const TFileObject &file) const
{
    const auto size = static_cast<quint64>(file.size());
    const SizeUnit &unit = unitFor(m_sizeFormat, size);
    QString text = QString::number(size / unit.divisor);
    text += unit.fraction;
    handlePaddingFor(text);
    if (m_showSizeUnit) {
        if (m_separateUnit)
            text += kBlank;
        text += unit.name;
    }
    return text;
}

QVariantMap TOriginalRule::properties() const
{
    QVariantMap map = TDateRule::properties();
    TRuleFields::addProperties(fields(), *this, map);
    return map;
}

void TOriginalRule::setProperties(const QVariantMap &properties)
{
    TDateRule::setProperties(properties);
    TRuleFields::setProperties(fields(), *this, properties);
}

std::shared_ptr<TRuleModel> TOriginalRule::newInstance() const
{
    return std::make_shared<TOriginalRule>();
}

TArchiveClass TOriginalRule::archiveClass() const
{
    return kArchiveClass;
}

void TOriginalRule::encodeWithCoder(TEncoder &coder) const
{
    TDateRule::encodeWithCoder(coder);
    TRuleFields::encodeFields(fields(), *this, coder);
}

void TOriginalRule::initWithCoder(const TDecoder &coder)
{
    TDateRule::initWithCoder(coder);
    TRuleFields::decodeFields(fields(), *this, coder);
    updatePreview();
}

void TOriginalRule::updatePreview()
{
    switch (m_whichProperty) {
    case FileName:
        setName(kNameTile.toString());
        break;
    case ParentFolder:
        setName(folderTile(m_parentLevel));
        break;
    case FileSize:
        setName(kSizeTile.toString());
        break;
    case FileDate:
        setName(kDateTile.toString());
        break;
    case Extension:
        setName(kExtensionTile.toString());
        break;
    default:
        setName(u""_s);
        break;
    }
}

QString TOriginalRule::editingViewController() const
{
    return kEditor.toString();
}
