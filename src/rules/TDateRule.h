// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "rules/TRuleFields.h"
#include "rules/TRuleModel.h"

/// One element of the current date and time, padded and limited in length. Base of the kinds that
/// pad, limit or format the dates of a file: they inherit the settings and the operations on them.
/// Lengths count UTF-16 units.
class TDateRule : public TRuleModel
{
public:
    TDateRule();
    explicit TDateRule(Decoding);
    static std::shared_ptr<TDateRule> decoding();

    QString processWithFileObject(TFileObject &file, TErrorLog *errorLog, TRuleDict &dict) override;
    QVariantMap properties() const override;
    void setProperties(const QVariantMap &properties) override;
    std::shared_ptr<TRuleModel> newInstance() const override;
    TArchiveClass archiveClass() const override;
    void encodeWithCoder(TEncoder &coder) const override;
    void initWithCoder(const TDecoder &coder) override;
    void updatePreview() override;
    QString editingViewController() const override;

    /// The element that dateFormat selects; "???date???" for an unknown one, "" for an unset date.
    QString getDateFromDate(TDate date) const;
    /// Fills up to padding in front, whatever the position says; a negative padding does nothing.
    void handlePaddingFor(QString &text) const;
    /// The same at the end.
    void handlePaddingAfter(QString &text) const;
    /// Pads one side only, the one that paddingPosition names, when padding is at least 1.
    void handlePaddingBothSidesWith(QString &text) const;
    /// Cuts to maxSize when limitSize is on. A text that must be cut first raises a maxSize below 1
    /// to 1, and the setting keeps that value.
    void handleMaxSizeFor(QString &text);

    /// Target width; 0 pads nothing.
    qint64 padding() const { return m_padding; }
    void setPadding(qint64 padding) { m_padding = padding; }
    /// Index of the padding character, see paddingCharacter().
    qint64 paddingChar() const { return m_paddingChar; }
    void setPaddingChar(qint64 paddingChar) { m_paddingChar = paddingChar; }
    /// 0 in front, anything else at the end.
    qint64 paddingPosition() const { return m_paddingPosition; }
    void setPaddingPosition(qint64 paddingPosition) { m_paddingPosition = paddingPosition; }
    /// Not 0: the text is cut to maxSize.
    qint64 limitSize() const { return m_limitSize; }
    void setLimitSize(qint64 limitSize) { m_limitSize = limitSize; }
    qint64 maxSize() const { return m_maxSize; }
    void setMaxSize(qint64 maxSize) { m_maxSize = maxSize; }
    /// 0 long date, 1 medium date, 2 long time, 3 medium time, 4 year, 5 two-digit year, 6 month
    /// name, 7 month, 8 day, 9 weekday name, 10 weekday from Sunday 1, 11 hour, 12 minute,
    /// 13 second, 14 AM or PM, 15 A or P.
    qint64 dateFormat() const { return m_dateFormat; }
    void setDateFormat(qint64 dateFormat) { m_dateFormat = dateFormat; }
    /// 0: the hour counts to twelve.
    qint64 timeFormat() const { return m_timeFormat; }
    void setTimeFormat(qint64 timeFormat) { m_timeFormat = timeFormat; }

private:
    static std::span<const TRuleField<TDateRule>> fields();
    QString hourText(TDate date) const;

    qint64 m_padding = 0;
    qint64 m_paddingChar = 0;
    qint64 m_paddingPosition = 0;
    qint64 m_limitSize = 0;
    qint64 m_maxSize = 0;
    qint64 m_dateFormat = 0;
    qint64 m_timeFormat = 0;
};
