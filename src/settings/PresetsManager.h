// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TResult.h"
#include "rules/TRuleModel.h"

#include <QList>
#include <QString>

#include <utility>
#include <vector>

/// Named, saved rule lists: shipped ones in the resources and the user's own in the data folder. A
/// user preset hides a shipped one of the same name.
class PresetsManager
{
public:
    static constexpr QLatin1StringView kExtension{"renamesetting"};

    struct Entry
    {
        QString name;
        QString path;
        bool shipped = false;
    };

    /// Folders of the shipped presets and of the user's (which is created when something is saved);
    /// an empty one is none.
    PresetsManager(QString internalFolder, QString externalFolder);
    /// The installed folders of this system, or those of the build tree.
    static PresetsManager standard();

    void readInternalPresetURLsIntoArray(QStringList &paths) const;
    void readExternalPresetURLsIntoArray(QStringList &paths) const;
    /// Name and rules of every readable preset, in insertion order, one for each name.
    std::vector<std::pair<QString, TRuleList>> readPresets() const;
    /// Every preset file, one for each name, without reading rules.
    std::vector<Entry> presets() const;
    TResult<TRuleList> readPreset(const QString &path) const;

    /// Writes atomically, overwriting; ":" in the name becomes ".". The path, or why not. No rules,
    /// an empty name or one with "/" is refused.
    TResult<QString> savePreset(const QString &name, const TRuleList &rules) const;
    /// Refuses shipped presets and unknown names.
    TResult<bool> deletePreset(const QString &name) const;
    /// The same by path.
    TResult<bool> deletePresetFile(const QString &path) const;

private:
    QString m_internalFolder;
    QString m_externalFolder;
};
