// SPDX-License-Identifier: GPL-3.0-or-later
#include "extensions/TExtensionHandler.h"

#include "commonprocs/StringAdditions.h"
#include "rules/TRuleFields.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr const char *kArchiveClass[] = {"TExtensionHandler", "NSObject"};
constexpr auto kArchivedProperties = "extensionProperties"_L1;
constexpr auto kMapArray = "mapArray"_L1;
constexpr auto kHandlingMethod = "handlingMethod"_L1;
constexpr auto kReplacer = "replacer"_L1;
constexpr auto kCaseHandling = "caseHandling"_L1;
constexpr auto kMapRemainderChoice = "mapRemainderChoice"_L1;

constexpr QStringView kDefaultOriginal = u"htm";
constexpr QStringView kDefaultTarget = u"html";
constexpr QStringView kDefaultReplacer = u"???";
constexpr QStringView kDefaultRegEx = u"\\s";
constexpr QStringView kDefaultRePattern = u"_";

constexpr QStringView kMethodNames[] = {u"(Unchanged)", u"Replace", u"Map", u"Strip", u"RegEx"};
constexpr QStringView kUnknownMethod = u"Err";

TExtensionMap rowFromValue(const QVariant &value)
{
    if (value.canConvert<TExtensionMap>())
        return value.value<TExtensionMap>();
    TExtensionMap row;
    row.setProperties(value.toMap());
    return row;
}

} // namespace

TExtensionHandler::TExtensionHandler()
    : m_mapArray{{kDefaultOriginal.toString(), kDefaultTarget.toString()}}
    , m_replacer(kDefaultReplacer.toString())
    , m_regEx(kDefaultRegEx.toString())
    , m_rePattern(kDefaultRePattern.toString())
{
}

std::unique_ptr<TExtensionHandler> TExtensionHandler::copy() const
{
    auto handler = std::make_unique<TExtensionHandler>();
    handler->setProperties(properties());
    return handler;
}

std::unique_ptr<TExtensionHandler> TExtensionHandler::copyForRun() const
{
    auto handler = copy();
    handler->setIgnoreCase(m_ignoreCase);
    handler->setRegEx(m_regEx);
    handler->setRegAccess(m_regAccess);
    handler->setRePattern(m_rePattern);
    return handler;
}

QString TExtensionHandler::processWithFileObject(TFileObject &file, TErrorLog *errorLog,
                                                 TRuleDict &dict)
{
    switch (m_handlingMethod) {
    case kUnchanged:
        return handleCaseFor(file.extension());
    case kReplace:
        return m_replacer;
    case kMap:
        return mapExtensionFor(file.extension());
    case kStrip:
        return u""_s;
    case kRegEx:
        break;
    default:
        return file.extension();
    }
    compileChangedPattern();
    RegexReplacer::Budget budget = RegexReplacer::Budget::after(m_exceededNames);
    const QString extension = rewrite(textForRegEx(file), budget);
    if (budget.exceeded) {
        ++m_exceededNames;
        dict.tookTooLong = true;
        file.logErrorType(TErrorTypes::kCritical, RegexReplacer::kTookTooLong.toString(), errorLog);
    }
    return extension;
}

QString TExtensionHandler::mapExtensionFor(const QString &extension) const
{
    const QString upper = m_ignoreCase != 0 ? upperCased(extension) : QString();
    for (const TExtensionMap &row : m_mapArray) {
        if (row.original == extension || (m_ignoreCase != 0 && upperCased(row.original) == upper))
            return row.target;
    }
    return m_mapRemainderChoice != 0 ? m_replacer : extension;
}

QString TExtensionHandler::handleCaseFor(const QString &extension) const
{
    switch (m_caseHandling) {
    case kUpperCase:
        return upperCased(extension);
    case kLowerCase:
        return lowerCased(extension);
    default:
        return extension;
    }
}

QString TExtensionHandler::handleRegExFor(const QString &text)
{
    RegexReplacer::Budget budget;
    return rewrite(text, budget);
}

QString TExtensionHandler::textForRegEx(const TFileObject &file) const
{
    switch (m_regAccess) {
    case kWholeName:
        return file.fileName() + u'.' + file.extension();
    case kNameWithoutExtension:
        return file.fileName();
    default:
        return file.extension();
    }
}

void TExtensionHandler::compileChangedPattern()
{
    if (m_compiled.pattern() == m_regEx && m_compiled.replacement() == m_rePattern)
        return;
    m_compiled = RegexReplacer(m_regEx, m_rePattern);
    m_exceededNames = 0;
}

QString TExtensionHandler::rewrite(const QString &text, RegexReplacer::Budget &budget)
{
    compileChangedPattern();
    const QString result = m_compiled.replaceAll(text, budget);
    return result.isNull() ? u""_s : result;
}

QString TExtensionHandler::name() const
{
    if (m_handlingMethod < 0 || m_handlingMethod >= std::ssize(kMethodNames))
        return kUnknownMethod.toString();
    return kMethodNames[m_handlingMethod].toString();
}

QVariantMap TExtensionHandler::properties() const
{
    QVariantList rows;
    rows.reserve(static_cast<qsizetype>(m_mapArray.size()));
    for (const TExtensionMap &row : m_mapArray)
        rows.append(QVariant::fromValue(row));
    return {{kMapArray, rows},
            {kHandlingMethod, m_handlingMethod},
            {kReplacer, m_replacer},
            {kCaseHandling, m_caseHandling},
            {kMapRemainderChoice, m_mapRemainderChoice}};
}

void TExtensionHandler::setProperties(const QVariantMap &properties)
{
    if (const auto found = properties.constFind(kMapArray); found != properties.cend()) {
        m_mapArray.clear();
        for (const QVariant &row : found->toList())
            m_mapArray.push_back(rowFromValue(row));
    }
    TRuleFields::setFromProperties(properties, kHandlingMethod, m_handlingMethod);
    TRuleFields::setFromProperties(properties, kReplacer, m_replacer);
    TRuleFields::setFromProperties(properties, kCaseHandling, m_caseHandling);
    TRuleFields::setFromProperties(properties, kMapRemainderChoice, m_mapRemainderChoice);
}

TArchiveClass TExtensionHandler::archiveClass()
{
    return kArchiveClass;
}

void TExtensionHandler::encodeWithCoder(TEncoder &coder) const
{
    coder.encodeDictionary(kArchivedProperties, [this](TEncoder &dictionary) {
        dictionary.encodeArray(
            kMapArray, static_cast<qsizetype>(m_mapArray.size()),
            [](qsizetype) { return TExtensionMap::archiveClass(); },
            [this](qsizetype i, TEncoder &row) {
                m_mapArray[static_cast<std::size_t>(i)].encodeWithCoder(row);
            });
        dictionary.encodeInteger(kHandlingMethod, m_handlingMethod);
        dictionary.encodeString(kReplacer, m_replacer);
        dictionary.encodeInteger(kCaseHandling, m_caseHandling);
        dictionary.encodeInteger(kMapRemainderChoice, m_mapRemainderChoice);
    });
}

/// Keys that the archive lacks leave what init has set.
void TExtensionHandler::initWithCoder(const TDecoder &coder)
{
    coder.decodeDictionary(kArchivedProperties, [this](const TDecoder &dictionary) {
        std::vector<TExtensionMap> rows;
        if (dictionary.decodeArray(kMapArray, [&rows](const TDecoder &row) {
                rows.emplace_back().initWithCoder(row);
            }))
            m_mapArray = std::move(rows);
        const auto decodeInteger = [&dictionary](QLatin1StringView key, qint64 &field) {
            if (dictionary.containsValueForKey(key))
                field = dictionary.decodeInteger(key);
        };
        decodeInteger(kHandlingMethod, m_handlingMethod);
        decodeInteger(kCaseHandling, m_caseHandling);
        decodeInteger(kMapRemainderChoice, m_mapRemainderChoice);
        if (dictionary.containsValueForKey(kReplacer))
            m_replacer = dictionary.decodeString(kReplacer);
    });
}

void TExtensionHandler::insertObjectInMapArrayAtIndex(const TExtensionMap &row, qsizetype index)
{
    const auto place = std::clamp<qsizetype>(index, 0, std::ssize(m_mapArray));
    m_mapArray.insert(m_mapArray.begin() + place, row);
}

void TExtensionHandler::removeObjectFromMapArrayAtIndex(qsizetype index)
{
    if (index >= 0 && index < std::ssize(m_mapArray))
        m_mapArray.erase(m_mapArray.begin() + index);
}
