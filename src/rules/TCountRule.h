// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "rules/TRuleFields.h"
#include "rules/TRuleModel.h"

#include <QMap>

/// A running number for each file of a batch, one for each file of the same extension, or the
/// number of files. Evaluating it moves it on, so its output depends on the order of the files.
class TCountRule : public TRuleModel
{
public:
    TCountRule();
    explicit TCountRule(Decoding);
    static std::shared_ptr<TCountRule> decoding();

    /// Starts all counters again.
    void prepareToStart() override;
    QString processWithFileObject(TFileObject &file, TErrorLog *errorLog, TRuleDict &dict) override;
    QVariantMap properties() const override;
    void setProperties(const QVariantMap &properties) override;
    std::shared_ptr<TRuleModel> newInstance() const override;
    TArchiveClass archiveClass() const override;
    void encodeWithCoder(TEncoder &coder) const override;
    /// Reads the running offset under another key than it is written, so a decoded counter starts
    /// at startValue; what was counted per extension goes on.
    void initWithCoder(const TDecoder &coder) override;
    void updatePreview() override;
    QString editingViewController() const override;

    qint64 startValue() const { return m_startValue; }
    void setStartValue(qint64 value) { m_startValue = value; }
    /// Each extension has its own counter.
    bool individualFileTypes() const { return m_individualFileTypes; }
    void setIndividualFileTypes(bool individual) { m_individualFileTypes = individual; }
    /// Offset of the next number from startValue. Equals startValue before the first
    /// prepareToStart(): a new rule that is not prepared counts from twice its start.
    qint64 globalCounter() const { return m_globalCounter; }
    void setGlobalCounter(qint64 counter) { m_globalCounter = counter; }
    /// Extension, in its own case, to the next number for it.
    const QMap<QString, qint64> &extensionCounters() const { return m_extensionCounters; }
    void setExtensionCounters(const QMap<QString, qint64> &counters)
    {
        m_extensionCounters = counters;
    }
    /// 0 decimal, 1 Roman in lower case, 2 in upper case, anything else "???".
    qint64 counterFormat() const { return m_counterFormat; }
    void setCounterFormat(qint64 format) { m_counterFormat = format; }
    /// The width when manualPadding is on.
    qint64 padding() const { return m_padding; }
    void setPadding(qint64 padding) { m_padding = padding; }
    /// Index of the padding character, see paddingCharacter().
    qint64 paddingChar() const { return m_paddingChar; }
    void setPaddingChar(qint64 paddingChar) { m_paddingChar = paddingChar; }
    /// 0: the width follows from the size of the batch.
    qint64 manualPadding() const { return m_manualPadding; }
    void setManualPadding(qint64 manual) { m_manualPadding = manual; }
    /// Used as it is, also when it is 0 or negative.
    qint64 increment() const { return m_increment; }
    void setIncrement(qint64 increment) { m_increment = increment; }
    /// Not 0: every file gets the number of files, and nothing counts on.
    qint64 counterType() const { return m_counterType; }
    void setCounterType(qint64 type) { m_counterType = type; }

private:
    static std::span<const TRuleField<TCountRule>> fields();
    QVariantMap countersAsMap() const;
    void setCountersFromMap(const QVariantMap &map);
    qint64 nextValue(const TFileObject &file, qint64 batchSize);
    qint64 width(qint64 batchSize) const;

    qint64 m_startValue = 0;
    bool m_individualFileTypes = false;
    qint64 m_globalCounter = 0;
    QMap<QString, qint64> m_extensionCounters;
    qint64 m_counterFormat = 0;
    qint64 m_padding = 0;
    qint64 m_paddingChar = 0;
    qint64 m_manualPadding = 0;
    qint64 m_increment = 0;
    qint64 m_counterType = 0;
};
