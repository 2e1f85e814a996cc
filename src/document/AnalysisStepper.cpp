// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/AnalysisStepper.h"

#include "commonprocs/HashSet128.h"
#include "commonprocs/StringAdditions.h"

using namespace Qt::StringLiterals;

namespace {

/// The path of the file follows.
constexpr QLatin1StringView kDuplicateError{"Duplicate: \"%@\" is already used. Check "};

} // namespace

/// The names seen so far, in upper case with the files' own extensions, and what is said of one
/// that comes again.
class AnalysisStepper::DuplicateKeys
{
public:
    explicit DuplicateKeys(qint64 expected) { m_seen.reserve(expected); }

    /// True when the key was there already.
    bool addKey(const QString &targetName, const QString &extension)
    {
        m_key.resize(0);
        m_key += targetName;
        m_key += u'.';
        m_key += extension;
        m_key = upperCased(std::move(m_key));
        return !m_seen.insert(Hash128::of(QStringView(m_key)));
    }

    /// Before the path. Where many files have one name, they come one after another.
    const QString &error(const QString &targetName)
    {
        if (m_error.isNull() || m_repeated != targetName) {
            m_repeated = targetName;
            m_error = formatted(kDuplicateError, {targetName});
        }
        return m_error;
    }

private:
    HashSet128 m_seen;
    QString m_key;
    QString m_repeated;
    QString m_error;
};

AnalysisStepper::AnalysisStepper(Settings settings)
    : m_settings(std::move(settings))
    , m_keys(std::make_unique<DuplicateKeys>(m_settings.batchSize))
{
}

AnalysisStepper::~AnalysisStepper() = default;

void AnalysisStepper::step(TFileObject &file, TErrorLog &batchLog)
{
    TRuleDict dict;
    dict.batchSize = m_settings.batchSize;
    dict.likelyLength = m_lastLength;
    file.clearErrLog();
    TAttributedString name =
        NameGeneration::applyRuleSet(m_settings.rules, file, m_index++, &batchLog, dict,
                                     m_settings.options, m_settings.colorCode);
    TAttributedString extension = NameGeneration::processExtensionForFile(
        *m_settings.extensionHandler, file, m_settings.extensionLog, dict);
    m_names.share(name);
    m_extensions.share(extension);
    m_lastLength = name.string().size();
    file.setTarget(std::move(name));
    file.setAttributedTargetExtension(extension);
    if (!m_settings.rules || m_settings.rules->empty())
        return;
    if (m_keys->addKey(file.targetName(), file.extension()))
        file.logErrorType(m_settings.duplicatesAreCritical ? TErrorTypes::kCritical
                                                           : TErrorTypes::kWarning,
                          file.withPath(m_keys->error(file.targetName())), &batchLog);
}

TAnalysisResult AnalysisStepper::step(const TFileItem &item,
                                      const TMetadataSource::Metadata &metadata,
                                      TErrorLog &batchLog)
{
    m_file.assign(item, metadata.imageProperties, metadata.id3);
    step(m_file, batchLog);
    return {m_file.attributedTargetName(), m_file.attributedTargetExtension(), m_file.errLog()};
}
