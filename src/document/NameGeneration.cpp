// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/NameGeneration.h"

#include "commonprocs/StringAdditions.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kNoRulesError{"No rules defined. You need at least one naming rule"};
constexpr QLatin1StringView kNoRulesName{"No Rules"};
constexpr QLatin1StringView kEmptyNameError{"Rules evaluate to empty name."};
constexpr TColor kExtensionColor{255, 0, 0};

/// A problem that every file of a batch may have: one text for all of them.
const TErrorText &noRulesError()
{
    static const TErrorText text{QString(kNoRulesError)};
    return text;
}

const TErrorText &emptyNameError()
{
    static const TErrorText text{QString(kEmptyNameError)};
    return text;
}

} // namespace

namespace NameGeneration {

QString postProcessFragment(const QString &fragment, const TOptions &options)
{
    if (fragment.isNull())
        return u""_s;
    if (options.compliance != 0 || std::none_of(fragment.cbegin(), fragment.cend(), [](QChar unit) {
            return unit == u':' || unit == u'/';
        }))
        return fragment;
    QString cleaned = fragment;
    cleaned.replace(u':', u'_');
    cleaned.replace(u'/', u'_');
    return cleaned;
}

QString postProcessFull(const QString &name)
{
    return stringByTrimmingWhitespace(name);
}

TAttributedString applyRuleSet(const TRuleList *rules, TFileObject &file, qsizetype index,
                               TErrorLog *log, TRuleDict &dict, const TOptions &options,
                               bool colorCode)
{
    if (!rules) {
        if (log)
            log->addErrorOfType(TErrorTypes::kCritical, noRulesError());
        return TAttributedString(kNoRulesName);
    }
    if (rules->empty()) {
        file.logErrorType(TErrorTypes::kCritical, noRulesError(), log);
        return TAttributedString(kNoRulesName);
    }
    TRuleDict own = dict;
    own.result = u""_s;
    own.partial = u""_s;
    TAttributedString name;
    name.reserve(dict.likelyLength);
    for (const TRulePtr &rule : *rules) {
        const qint64 savedID = rule->theID();
        rule->setTheID(index);
        own.partial = postProcessFragment(rule->processWithFileObject(file, log, own), options);
        own.result.clear(); // which shares the text, so that the text would be copied to grow
        name.append(own.partial, colorCode ? rule->theColor() : TColor());
        own.result = name.string();
        QString rewritten = name.string();
        if (rule->postProcessResult(rewritten, log, own))
            name = TAttributedString(rewritten, rule->theColor(), TColor());
        rule->setTheID(savedID);
    }
    if (postProcessFull(name.string()).isEmpty())
        file.logErrorType(TErrorTypes::kCritical, emptyNameError(), log);
    dict.tookTooLong = own.tookTooLong;
    return name;
}

TAttributedString processExtensionForFile(TExtensionHandler &handler, TFileObject &file,
                                          TErrorLog *batchLog, const TRuleDict &dict)
{
    if (handler.handlingMethod() == TExtensionHandler::kUnchanged)
        return {};
    TRuleDict own = dict;
    const QString extension = handler.processWithFileObject(file, batchLog, own);
    return TAttributedString(u'.' + extension, TColor(), kExtensionColor);
}

QString wantedExtension(const TFileObject &file)
{
    const QString shown = file.attributedTargetExtension().string();
    if (shown == u".")
        return {};
    if (!shown.isEmpty())
        return shown;
    const QString own = file.extension();
    return own.isEmpty() ? own : u'.' + own;
}

Extension extensionForPeople(const TFileObject &file, const TExtensionHandler &handler)
{
    const QString shown = file.attributedTargetExtension().string();
    if (shown == u".")
        return {};
    if (!shown.isEmpty())
        return {shown, false};
    const QString own = file.extension();
    return own.isEmpty() ? Extension{} : Extension{u'.' + handler.handleCaseFor(own), true};
}

void prepareAllRules(const TRuleList &rules)
{
    for (const TRulePtr &rule : rules)
        rule->prepareToStart();
}

} // namespace NameGeneration
