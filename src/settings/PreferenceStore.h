// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QVariantMap>

#include <memory>
#include <mutex>

/// The application's stored values: one JSON object in one file per user,
/// $XDG_CONFIG_HOME/com.zel.tavrin/preferences.json (else below ~/.config). May be used from any
/// thread and by several processes at once: sync() merges what this process changed into what the
/// file says by then, and replaces the file whole.
///
/// Keys written by the preferences ("true"/"false" and decimal numbers as texts):
///   author               "written by zel"; without exactly that text the preferences count as none
///   prefSize             "8"
///   version              version of the preferences, "1"
///   firstrun             "true" until the first-run dialog was shown
///   runCount             starts of the program with its window, for a rating reminder
///   hasRated             "true" once the user rated the program
///   SUHasLaunchedBefore  "true"; tells an update component that this is not the first start
///   SUEnableAutomaticChecks  "false"; keeps automatic update checks off
///   scopedFolders        list of saved folder grants; read at start, never written
/// Keys of the user defaults (JSON numbers and booleans):
///   logging              true when the log level is not 0
///   logLevel             0 to 3
///   neverEver            0 until the user asked never to be asked for a rating
class PreferenceStore
{
public:
    static constexpr QLatin1StringView kDomain{"com.zel.tavrin"};

    /// Reads the file. One that is missing is empty; one that is damaged is logged and counts as
    /// empty.
    explicit PreferenceStore(QString path);
    PreferenceStore(const PreferenceStore &) = delete;
    PreferenceStore &operator=(const PreferenceStore &) = delete;

    /// The store of this user, made on first use.
    static std::shared_ptr<PreferenceStore> application();
    /// Drops it, changes not synced included, so that a test starts as a process does.
    static void resetForTests();

    /// Invalid when absent.
    QVariant value(const QString &key) const;
    /// An invalid value removes the key.
    void setValue(const QString &key, const QVariant &value);
    /// Writes what was changed since the last time. False, and a line in the log, when the disk
    /// refuses; the changes stay pending.
    bool sync();

    /// A text's leading decimal digits after blanks and a sign; a number without its fraction;
    /// 1 or 0 for a boolean; 0 for everything else.
    static qint64 integerValue(const QVariant &value);
    /// A text that begins with Y, y, T, t or 1 to 9 after blanks; a number other than 0.
    static bool boolValue(const QVariant &value);

private:
    /// Tells what is wrong with the file instead of logging it.
    PreferenceStore(QString path, QString &problem);
    QVariantMap merged(QString &problem) const;
    bool writeFile(const QVariantMap &values, QString &problem) const;

    const QString m_path;
    mutable std::mutex m_mutex;
    QVariantMap m_values;  ///< as read, with the changes
    QVariantMap m_pending; ///< changes not written yet; invalid values are removals
};
