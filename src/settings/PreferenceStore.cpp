// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/PreferenceStore.h"

#include "platform/PrivateFolder.h"
#include "settings/logging.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>
#include <QSaveFile>
#include <QStandardPaths>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kFileName{"/preferences.json"};
constexpr QLatin1StringView kLockSuffix{".lock"};
constexpr QLatin1StringView kLogTitle{"Preferences"};
constexpr int kLockWait = 2000; ///< milliseconds; a hung process must not keep others from saving

struct Application
{
    std::mutex mutex;
    std::shared_ptr<PreferenceStore> store;
};

Application &instance()
{
    static Application application;
    return application;
}

QString applicationPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + '/'_L1 +
           PreferenceStore::kDomain + kFileName;
}

/// Does not log, for who logs may be who wants the level that is stored here.
QVariantMap readFile(const QString &path, QString &problem)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (file.exists())
            problem = u"%1 cannot be read: %2"_s.arg(path, file.errorString());
        return {};
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (document.isObject())
        return document.object().toVariantMap();
    const QString reason = error.error == QJsonParseError::NoError ? u"it holds no JSON object"_s
                                                                   : error.errorString();
    problem = u"%1 is damaged and is ignored: %2"_s.arg(path, reason);
    return {};
}

void logProblem(const QString &problem)
{
    if (!problem.isEmpty())
        zelWarn(kLogTitle, problem);
}

void apply(QVariantMap &values, const QVariantMap &changes)
{
    for (auto it = changes.begin(); it != changes.end(); ++it) {
        if (it.value().isValid())
            values.insert(it.key(), it.value());
        else
            values.remove(it.key());
    }
}

qint64 integerOfDouble(double number)
{
    constexpr double kLimit = 9223372036854775808.0;
    if (std::isnan(number))
        return 0;
    if (number >= kLimit)
        return std::numeric_limits<qint64>::max();
    if (number < -kLimit)
        return std::numeric_limits<qint64>::min();
    return static_cast<qint64>(number);
}

/// Out of range ends at the nearest number that can be held.
qint64 integerOfText(QStringView text)
{
    text = text.trimmed();
    const bool negative = text.startsWith('-'_L1);
    if (negative || text.startsWith('+'_L1))
        text = text.mid(1);
    qsizetype digits = 0;
    while (digits < text.size() && text[digits] >= '0'_L1 && text[digits] <= '9'_L1)
        ++digits;
    if (digits == 0)
        return 0;
    bool fits = false;
    const qint64 number = text.first(digits).toLongLong(&fits);
    if (fits)
        return negative ? -number : number;
    return negative ? std::numeric_limits<qint64>::min() : std::numeric_limits<qint64>::max();
}

} // namespace

PreferenceStore::PreferenceStore(QString path, QString &problem)
    : m_path(std::move(path))
    , m_values(readFile(m_path, problem))
{
}

PreferenceStore::PreferenceStore(QString path)
    : m_path(std::move(path))
{
    QString problem;
    m_values = readFile(m_path, problem);
    logProblem(problem);
}

std::shared_ptr<PreferenceStore> PreferenceStore::application()
{
    QString problem;
    std::unique_lock lock(instance().mutex);
    if (!instance().store)
        instance().store.reset(new PreferenceStore(applicationPath(), problem));
    const std::shared_ptr<PreferenceStore> store = instance().store;
    lock.unlock();
    logProblem(problem);
    return store;
}

void PreferenceStore::resetForTests()
{
    const std::scoped_lock lock(instance().mutex);
    instance().store.reset();
}

QVariant PreferenceStore::value(const QString &key) const
{
    const std::scoped_lock lock(m_mutex);
    return m_values.value(key);
}

void PreferenceStore::setValue(const QString &key, const QVariant &value)
{
    const std::scoped_lock lock(m_mutex);
    m_pending.insert(key, value);
    apply(m_values, {{key, value}});
}

bool PreferenceStore::sync()
{
    QString readProblem;
    QString problem;
    {
        const std::scoped_lock lock(m_mutex);
        if (m_pending.isEmpty())
            return true;
        makePrivateFolder(QFile::encodeName(QFileInfo(m_path).path()));
        QLockFile otherProcesses(m_path + kLockSuffix);
        otherProcesses.tryLock(kLockWait);
        QVariantMap values = merged(readProblem);
        if (writeFile(values, problem)) {
            m_values = std::move(values);
            m_pending.clear();
        } else {
            problem = u"%1 cannot be written: %2"_s.arg(m_path, problem);
        }
    }
    logProblem(readProblem);
    logProblem(problem);
    return problem.isEmpty();
}

QVariantMap PreferenceStore::merged(QString &problem) const
{
    QVariantMap values = readFile(m_path, problem);
    apply(values, m_pending);
    return values;
}

bool PreferenceStore::writeFile(const QVariantMap &values, QString &problem) const
{
    QSaveFile file(m_path);
    const QByteArray text = QJsonDocument(QJsonObject::fromVariantMap(values)).toJson();
    if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit())
        return true;
    problem = file.errorString();
    return false;
}

qint64 PreferenceStore::integerValue(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QString:
        return integerOfText(value.toString());
    case QMetaType::Double:
        return integerOfDouble(value.toDouble());
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return value.toLongLong();
    default:
        return 0;
    }
}

bool PreferenceStore::boolValue(const QVariant &value)
{
    if (value.typeId() != QMetaType::QString)
        return value.typeId() == QMetaType::Double ? value.toDouble() != 0
                                                   : integerValue(value) != 0;
    const QString text = value.toString().trimmed();
    return !text.isEmpty() && u"YyTt123456789"_s.contains(text[0]);
}
