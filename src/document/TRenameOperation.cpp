// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TRenameOperation.h"

#include "commonprocs/ByteNames.h"

#include <QStringBuilder>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kNoRuleLine{"%@: no rule to generate name. aborting rename\n"};
constexpr QLatin1StringView kTooFewRulesLine{
    "%@: too few rules to generate name. aborting rename\n"};
constexpr QLatin1StringView kEmptyNameError{"Rules evaluated to empty name. %@ used"};
constexpr QLatin1StringView kEmptyNameLine{"%@: rules evalued to empty name. '%@' substituted.\n"};
constexpr QLatin1StringView kNotUniqueError{"'%@' is not unique. Modified to '%@'"};
constexpr QLatin1StringView kNotUniqueLine{"%@: target name '%@' isn't unique, changed to '%@'\n"};
constexpr qsizetype kUsualLength = 40; ///< for which memory is taken at once

} // namespace

QString TEvaluatedName::joined(const QString &base, const QString &extension)
{
    if (extension.isEmpty())
        return base;
    return base % u'.' % extension;
}

TEvaluatedName TRenameOperation::evaluate(const TRuleList *rules, TExtensionHandler &handler,
                                          TFileObject &file, qsizetype index, qint64 batchSize,
                                          const TOptions &options)
{
    TEvaluatedName name;
    if (!rules)
        name.textLog += formatted(kNoRuleLine, {file.fileName()});
    if (!rules || rules->empty()) {
        name.textLog += formatted(kTooFewRulesLine, {file.fileName()});
        return name;
    }
    TRuleDict dict;
    dict.batchSize = batchSize;
    dict.result = u""_s;
    dict.partial = u""_s;
    name.extension = handler.processWithFileObject(file, &name.errors, dict);
    QString assembled;
    assembled.reserve(kUsualLength);
    for (const TRulePtr &rule : *rules) {
        const qint64 savedID = rule->theID();
        rule->setTheID(index);
        dict.partial = NameGeneration::postProcessFragment(
            rule->processWithFileObject(file, &name.errors, dict), options);
        dict.result.clear(); // which shares the text, so that the text would be copied to grow
        assembled += dict.partial;
        dict.result = assembled;
        rule->postProcessResult(assembled, &name.errors, dict);
        rule->setTheID(savedID);
    }
    name.tookTooLong = dict.tookTooLong;
    name.base = NameGeneration::postProcessFull(assembled);
    if (name.base.isEmpty()) {
        name.wasEmpty = true;
        name.base = QString(kSafeName);
        name.errors.addErrorOfType(TErrorTypes::kWarning, formatted(kEmptyNameError, {name.base}));
        name.textLog += formatted(kEmptyNameLine, {file.fileName(), name.base});
    }
    name.base = ByteNames::withoutLoneSurrogates(name.base);
    name.extension = ByteNames::withoutLoneSurrogates(name.extension);
    return name;
}

void TRenameOperation::applyUniqueBase(TEvaluatedName &name, const QString &fileName,
                                       const QString &uniqueBase)
{
    if (uniqueBase == name.base)
        return;
    name.textLog += formatted(kNotUniqueLine, {fileName, name.base, uniqueBase});
    name.errors.addErrorOfType(TErrorTypes::kWarning,
                               formatted(kNotUniqueError, {name.base, uniqueBase}));
    name.base = uniqueBase;
}
