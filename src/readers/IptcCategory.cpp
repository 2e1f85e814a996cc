// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/IptcCategory.h"

#include "readers/TagValue.h"

#include <QLatin1StringView>
#include <QRegularExpression>

#include <cmath>
#include <exception>
#include <string>
#include <unordered_map>

using namespace Qt::StringLiterals;

namespace {

enum class Shape { Text, Texts, Number };

struct Row
{
    const char *record; ///< in the classic records; null when only XMP has it
    const char *xmp;    ///< null when XMP has no such property
    QLatin1StringView key;
    Shape shape;
};

constexpr Row kRows[] = {
    {"ObjectType", nullptr, "ObjectTypeReference"_L1, Shape::Text},
    {"ObjectAttribute", "Xmp.iptc.IntellectualGenre", "ObjectAttributeReference"_L1, Shape::Texts},
    {"ObjectName", "Xmp.dc.title", "ObjectName"_L1, Shape::Text},
    {"EditStatus", nullptr, "EditStatus"_L1, Shape::Text},
    {"EditorialUpdate", nullptr, "EditorialUpdate"_L1, Shape::Text},
    {"Urgency", "Xmp.photoshop.Urgency", "Urgency"_L1, Shape::Number},
    {"Subject", "Xmp.iptc.SubjectCode", "SubjectReference"_L1, Shape::Texts},
    {"Category", "Xmp.photoshop.Category", "Category"_L1, Shape::Text},
    {"SuppCategory", "Xmp.photoshop.SupplementalCategories", "SupplementalCategory"_L1,
     Shape::Texts},
    {"FixtureId", nullptr, "FixtureIdentifier"_L1, Shape::Text},
    {"Keywords", "Xmp.dc.subject", "Keywords"_L1, Shape::Texts},
    {"LocationCode", nullptr, "ContentLocationCode"_L1, Shape::Texts},
    {"LocationName", nullptr, "ContentLocationName"_L1, Shape::Texts},
    {"ReleaseDate", nullptr, "ReleaseDate"_L1, Shape::Text},
    {"ReleaseTime", nullptr, "ReleaseTime"_L1, Shape::Text},
    {"ExpirationDate", nullptr, "ExpirationDate"_L1, Shape::Text},
    {"ExpirationTime", nullptr, "ExpirationTime"_L1, Shape::Text},
    {"SpecialInstructions", "Xmp.photoshop.Instructions", "SpecialInstructions"_L1, Shape::Text},
    {"ActionAdvised", nullptr, "ActionAdvised"_L1, Shape::Text},
    {"ReferenceService", nullptr, "ReferenceService"_L1, Shape::Texts},
    {"ReferenceDate", nullptr, "ReferenceDate"_L1, Shape::Texts},
    {"ReferenceNumber", nullptr, "ReferenceNumber"_L1, Shape::Texts},
    {"DateCreated", nullptr, "DateCreated"_L1, Shape::Text},
    {"TimeCreated", nullptr, "TimeCreated"_L1, Shape::Text},
    {"DigitizationDate", nullptr, "DigitalCreationDate"_L1, Shape::Text},
    {"DigitizationTime", nullptr, "DigitalCreationTime"_L1, Shape::Text},
    {"Program", nullptr, "OriginatingProgram"_L1, Shape::Text},
    {"ProgramVersion", nullptr, "ProgramVersion"_L1, Shape::Text},
    {"ObjectCycle", nullptr, "ObjectCycle"_L1, Shape::Text},
    {"Byline", "Xmp.dc.creator", "Byline"_L1, Shape::Texts},
    {"BylineTitle", "Xmp.photoshop.AuthorsPosition", "BylineTitle"_L1, Shape::Texts},
    {"City", "Xmp.photoshop.City", "City"_L1, Shape::Text},
    {"SubLocation", "Xmp.iptc.Location", "SubLocation"_L1, Shape::Text},
    {"ProvinceState", "Xmp.photoshop.State", "Province/State"_L1, Shape::Text},
    {"CountryCode", "Xmp.iptc.CountryCode", "Country/PrimaryLocationCode"_L1, Shape::Text},
    {"CountryName", "Xmp.photoshop.Country", "Country/PrimaryLocationName"_L1, Shape::Text},
    {"TransmissionReference", "Xmp.photoshop.TransmissionReference",
     "OriginalTransmissionReference"_L1, Shape::Text},
    {"Headline", "Xmp.photoshop.Headline", "Headline"_L1, Shape::Text},
    {"Credit", "Xmp.photoshop.Credit", "Credit"_L1, Shape::Text},
    {"Source", "Xmp.photoshop.Source", "Source"_L1, Shape::Text},
    {"Copyright", "Xmp.dc.rights", "CopyrightNotice"_L1, Shape::Text},
    {"Contact", nullptr, "Contact"_L1, Shape::Texts},
    {"Caption", "Xmp.dc.description", "Caption/Abstract"_L1, Shape::Text},
    {"Writer", "Xmp.photoshop.CaptionWriter", "Writer/Editor"_L1, Shape::Texts},
    {"ImageType", nullptr, "ImageType"_L1, Shape::Text},
    {"ImageOrientation", nullptr, "ImageOrientation"_L1, Shape::Text},
    {"Language", nullptr, "LanguageIdentifier"_L1, Shape::Text},
    {nullptr, "Xmp.xmp.Rating", "StarRating"_L1, Shape::Number},
    {nullptr, "Xmp.xmpRights.UsageTerms", "UsageTerms"_L1, Shape::Text},
    {nullptr, "Xmp.iptc.Scene", "Scene"_L1, Shape::Texts},
};

constexpr QLatin1StringView kContactInfo = "CreatorContactInfo"_L1;
constexpr char kContactPrefix[] = "Xmp.iptc.CreatorContactInfo/";
constexpr char kDateCreated[] = "Xmp.photoshop.DateCreated";
constexpr char kRecordPrefix[] = "Iptc.Application2.";

using Targets = std::unordered_map<std::string, const Row *>;

Targets makeTargets()
{
    Targets result;
    for (const Row &row : kRows) {
        if (row.record)
            result.emplace(std::string(kRecordPrefix) + row.record, &row);
        if (row.xmp)
            result.emplace(row.xmp, &row);
    }
    return result;
}

const Row *rowOf(const std::string &key)
{
    static const Targets targets = makeTargets();
    const auto it = targets.find(key);
    return it == targets.end() ? nullptr : it->second;
}

/// The texts of one datum: XMP arrays have several.
QStringList textsOf(const Exiv2::Value &value)
{
    QStringList texts;
    const auto *array = dynamic_cast<const Exiv2::XmpArrayValue *>(&value);
    for (long i = 0; array && i < array->count(); ++i)
        texts.append(QString::fromStdString(array->toString(i)));
    if (!array)
        texts.append(shapedValue(value, TagShape::Text).toString());
    texts.removeAll(QString());
    return texts;
}

/// XMP also writes whole numbers with a fraction, "4.0".
QVariant numberOrText(const QString &text)
{
    bool isNumber = false;
    const QString trimmed = text.trimmed();
    if (const qlonglong whole = trimmed.toLongLong(&isNumber); isNumber)
        return whole;
    const double real = trimmed.toDouble(&isNumber);
    return isNumber && std::isfinite(real) ? QVariant(real) : QVariant(text);
}

void insertTexts(QVariantMap &category, const Row &row, const QStringList &texts)
{
    if (texts.isEmpty())
        return;
    if (row.shape == Shape::Texts) {
        QVariantList list = category.value(row.key).toList();
        for (const QString &text : texts)
            list.append(text);
        category.insert(row.key, list);
        return;
    }
    if (category.contains(row.key))
        return;
    category.insert(row.key, row.shape == Shape::Number ? numberOrText(texts.front())
                                                        : QVariant(texts.front()));
}

/// A field of the contact, "CiAdrCity" of "…/Iptc4xmpCore:CiAdrCity". The prefix is the file's own
/// choice, for which Exiv2 cannot tell the namespace.
QString contactField(const std::string &key)
{
    const size_t colon = key.find(':', std::size(kContactPrefix) - 1);
    if (!key.starts_with(kContactPrefix) || colon == std::string::npos)
        return {};
    return QString::fromStdString(key.substr(colon + 1));
}

void insertContact(QVariantMap &category, const std::string &key, const Exiv2::Value &value)
{
    const QString field = contactField(key);
    const QString text =
        field.isEmpty() ? QString() : shapedValue(value, TagShape::Text).toString();
    if (text.isEmpty())
        return;
    QVariantMap contact = category.value(kContactInfo).toMap();
    contact.insert(field, text);
    category.insert(kContactInfo, contact);
}

/// XMP has the day and the time in one text, "2011-02-03T04:05:06.7+09:00", as far as they are
/// known; the records have "20110203" and "040506+0900".
void insertDate(QVariantMap &category, const std::string &key, const Exiv2::Value &value)
{
    static const QRegularExpression shape(
        uR"(^(\d{4})-(\d\d)-(\d\d)(?:T(\d\d):(\d\d)(?::(\d\d)(?:\.\d+)?)?(?:(Z)|([+-]\d\d):(\d\d))?)?$)"_s);
    const QRegularExpressionMatch match =
        key == kDateCreated ? shape.match(QString::fromStdString(value.toString()))
                            : QRegularExpressionMatch();
    if (!match.hasMatch())
        return;
    const auto part = [&match](int index, const QString &otherwise = {}) {
        return match.hasCaptured(index) ? match.captured(index) : otherwise;
    };
    category.insert(u"DateCreated"_s, QString(part(1) + part(2) + part(3)));
    if (!match.hasCaptured(4))
        return;
    const QString zone = match.hasCaptured(7) ? u"+0000"_s : QString(part(8) + part(9));
    category.insert(u"TimeCreated"_s, QString(part(4) + part(5) + part(6, u"00"_s) + zone));
}

template <typename Data>
QVariantMap categoryOf(const Data &data)
{
    QVariantMap category;
    for (const auto &datum : data) {
        try {
            const std::string key = datum.key();
            if (const Row *row = rowOf(key))
                insertTexts(category, *row, textsOf(datum.value()));
            insertContact(category, key, datum.value());
            insertDate(category, key, datum.value());
        } catch (const std::exception &) { // that value cannot be read; the others can
        }
    }
    return category;
}

} // namespace

QVariantMap iptcCategory(const ImageTags &tags)
{
    QVariantMap category = categoryOf(tags.xmp);
    category.insert(categoryOf(tags.iptc));
    return category;
}
