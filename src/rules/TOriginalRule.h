// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "rules/TDateRule.h"

/// One property of the file as it is now: name, a parent folder's name, size, a date or the
/// extension, then edited, padded and limited. Which steps apply depends on the property: folders
/// skip replacing, dates are only padded and limited, and sizes are not limited.
class TOriginalRule : public TDateRule
{
public:
    TOriginalRule();
    explicit TOriginalRule(Decoding);
    static std::shared_ptr<TOriginalRule> decoding();

    QString processWithFileObject(TFileObject &file, TErrorLog *errorLog, TRuleDict &dict) override;
    QVariantMap properties() const override;
    void setProperties(const QVariantMap &properties) override;
    std::shared_ptr<TRuleModel> newInstance() const override;
    TArchiveClass archiveClass() const override;
    void encodeWithCoder(TEncoder &coder) const override;
    void initWithCoder(const TDecoder &coder) override;
    void updatePreview() override;
    QString editingViewController() const override;

    /// Name of the folder that many levels above the one that holds the file; the top-most folder
    /// below the root when there are not that many, and the file's own name right below the root.
    static QString getParentFrom(const TFileObject &file, qint64 level);
    /// The size in its unit, padded in front of the number.
    QString getFileSizeFrom(const TFileObject &file) const;

    /// 0 file name, 1 parent folder, 2 size, 3 date, 4 extension.
    qint64 whichProperty() const { return m_whichProperty; }
    void setWhichProperty(qint64 property) { m_whichProperty = property; }
    /// Whether the property is more than the file's location.
    bool readsSizeOrDate() const;
    /// 0 picks the unit by the size; 1 B, 2 KB, 3 MB, 4 GB, 5 TB. Anything else counts as 0.
    qint64 sizeFormat() const { return m_sizeFormat; }
    void setSizeFormat(qint64 format) { m_sizeFormat = format; }
    bool showSizeUnit() const { return m_showSizeUnit; }
    void setShowSizeUnit(bool show) { m_showSizeUnit = show; }
    /// A blank between number and unit.
    bool separateUnit() const { return m_separateUnit; }
    void setSeparateUnit(bool separate) { m_separateUnit = separate; }
    qint64 dropFromBeginning() const { return m_dropFromBeginning; }
    void setDropFromBeginning(qint64 units) { m_dropFromBeginning = units; }
    qint64 dropFromEnd() const { return m_dropFromEnd; }
    void setDropFromEnd(qint64 units) { m_dropFromEnd = units; }
    /// 0 the folder that holds the file, 1 the one above, and so on.
    qint64 parentLevel() const { return m_parentLevel; }
    void setParentLevel(qint64 level) { m_parentLevel = level; }
    /// Kept and archived, without effect.
    qint64 postprocessing() const { return m_postprocessing; }
    void setPostprocessing(qint64 value) { m_postprocessing = value; }
    /// 0 none, 1 upper, 2 lower case.
    qint64 caseConversion() const { return m_caseConversion; }
    void setCaseConversion(qint64 conversion) { m_caseConversion = conversion; }
    /// 0 none, 1 remove blanks, 2 put one before each lower-to-upper transition.
    qint64 blankHandling() const { return m_blankHandling; }
    void setBlankHandling(qint64 handling) { m_blankHandling = handling; }
    const QString &stringToReplace() const { return m_stringToReplace; }
    void setStringToReplace(const QString &text) { m_stringToReplace = text; }
    /// Empty: nothing is replaced.
    const QString &stringToLookFor() const { return m_stringToLookFor; }
    void setStringToLookFor(const QString &text) { m_stringToLookFor = text; }
    /// Not 0: the search ignores case. The name says the opposite, but recipes depend on it.
    qint64 caseSensitiveSearch() const { return m_caseSensitiveSearch; }
    void setCaseSensitiveSearch(qint64 sensitive) { m_caseSensitiveSearch = sensitive; }
    /// Characters of which every occurrence is removed.
    const QString &charsToStrip() const { return m_charsToStrip; }
    void setCharsToStrip(const QString &characters) { m_charsToStrip = characters; }
    /// 0 creation, anything else modification.
    qint64 whichDate() const { return m_whichDate; }
    void setWhichDate(qint64 date) { m_whichDate = date; }

private:
    static std::span<const TRuleField<TOriginalRule>> fields();
    QString edited(QString text, bool replace) const;
    QString finished(QString text);

    qint64 m_whichProperty = 0;
    qint64 m_sizeFormat = 0;
    bool m_showSizeUnit = false;
    bool m_separateUnit = false;
    qint64 m_dropFromBeginning = 0;
    qint64 m_dropFromEnd = 0;
    qint64 m_parentLevel = 0;
    qint64 m_postprocessing = 0;
    qint64 m_caseConversion = 0;
    qint64 m_blankHandling = 0;
    QString m_stringToReplace;
    QString m_stringToLookFor;
    qint64 m_caseSensitiveSearch = 0;
    QString m_charsToStrip;
    qint64 m_whichDate = 0;
};
