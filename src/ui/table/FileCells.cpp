// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/table/FileCells.h"

#include "commonprocs/ByteNames.h"
#include "document/TDocument.h"
#include "ui/controls/ToolTip.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QLocale>

using namespace Qt::StringLiterals;

namespace {

constexpr const char *kContext = "FileTable";
constexpr const char *kSavedAs = QT_TRANSLATE_NOOP("FileTable", "\u21b3 saved as %1");
constexpr const char *kRefused = QT_TRANSLATE_NOOP("FileTable", "\u21b3 %1");
constexpr const char *kNameTaken = QT_TRANSLATE_NOOP(
    "FileTable", "The run would save it as %1, because the name must be free and usable.");
constexpr const char *kWouldFail =
    QT_TRANSLATE_NOOP("FileTable", "The run could not give it this name: %1");
constexpr const char *kProcessed = QT_TRANSLATE_NOOP(
    "FileTable", "A run has been through this file. It leaves the list when files are added.");
constexpr QLatin1StringView kPlainDate{"yyyy-MM-dd HH:mm"};
constexpr QLatin1StringView kPlainDay{"yyyy-MM-dd"};

QString text(const char *source)
{
    return QCoreApplication::translate(kContext, source);
}

bool isKnown(const FileCells::Forecast &forecast)
{
    return forecast && !forecast->finalName.isNull();
}

} // namespace

namespace FileCells {

const QString &currentName(const TFileObject &file)
{
    return file.item().url.lastPathComponent();
}

QString shownName(const TFileObject &file)
{
    const QString &name = file.attributedTargetName().string();
    return name.isEmpty() ? file.targetName() : name;
}

QString wantedName(const TFileObject &file)
{
    return shownName(file) + NameGeneration::wantedExtension(file);
}

QString newName(const TFileObject &file, const Forecast &forecast)
{
    return isKnown(forecast) ? forecast->finalName : wantedName(file);
}

bool isUnchanged(const TFileObject &file, const Forecast &forecast)
{
    if (forecast && forecast->unchanged)
        return true;
    const QString name = shownName(file);
    const QString &current = currentName(file);
    const QStringView base = QStringView(name).trimmed();
    if (!QStringView(current).startsWith(base))
        return false;
    const QString extension = NameGeneration::wantedExtension(file);
    if (QStringView(current).sliced(base.size()) != extension)
        return false;
    // An extension whose letter case the run changes is not shown when extensions are left alone.
    return !isKnown(forecast) || extension.isEmpty() || forecast->finalName.endsWith(extension);
}

bool keepsName(const TDocument &document, const TFileObject &file, const Forecast &forecast)
{
    return document.ruleArray().empty() || isUnchanged(file, forecast);
}

Extension shownExtension(const TDocument &document, const TFileObject &file)
{
    return document.ruleArray().empty()
               ? Extension()
               : NameGeneration::extensionForPeople(file, document.theExtensionHandler());
}

Note note(const TFileObject &file, const Forecast &forecast, const Extension &extension)
{
    if (!isKnown(forecast))
        return {};
    if (!forecast->refusal.isEmpty())
        return {text(kRefused).arg(forecast->refusal), true};
    if (forecast->finalName == shownName(file) + extension.text)
        return {};
    return {text(kSavedAs).arg(ByteNames::forDisplay(forecast->finalName)), false};
}

int level(const TFileObject &file, const Forecast &forecast)
{
    const bool isRefused = forecast && !forecast->refusal.isEmpty();
    return std::max(file.errLevel(), isRefused ? TErrorTypes::kWarning : TErrorTypes::kNone);
}

TErrorLog problems(const TFileObject &file, const Forecast &forecast)
{
    TErrorLog log = file.errLog();
    if (forecast && !forecast->refusal.isEmpty())
        log.addErrorOfType(TErrorTypes::kWarning, text(kWouldFail).arg(forecast->refusal));
    return log;
}

QString dateText(TDate date)
{
    if (!date.isSet())
        return {};
    const QDateTime moment = QDateTime::fromMSecsSinceEpoch(date.milliseconds());
    const QLocale locale;
    if (locale.language() == QLocale::C)
        return moment.toString(kPlainDate);
    return locale.toString(moment, QLocale::ShortFormat);
}

QString dayText(TDate date)
{
    if (!date.isSet())
        return {};
    const QDate day = QDateTime::fromMSecsSinceEpoch(date.milliseconds()).date();
    const QLocale locale;
    return locale.language() == QLocale::C ? day.toString(kPlainDay)
                                           : locale.toString(day, QLocale::ShortFormat);
}

QString stateText(const TFileObject &file, const Forecast &forecast)
{
    switch (level(file, forecast)) {
    case TErrorTypes::kWarning:
        return QCoreApplication::translate(kContext, "Warning");
    case TErrorTypes::kCritical:
        return QCoreApplication::translate(kContext, "Critical problem");
    default:
        return file.hasBeenProcessed() ? QCoreApplication::translate(kContext, "Processed")
                                       : QCoreApplication::translate(kContext, "No problem");
    }
}

QString stateToolTip(const TFileObject &file, const Forecast &forecast)
{
    const TErrorLog log = problems(file, forecast);
    QStringList lines;
    for (const TErrorTypes &problem : log)
        lines.append(problem.errDesc.toString());
    if (lines.isEmpty() && file.hasBeenProcessed())
        lines.append(text(kProcessed));
    return ToolTip::of(lines.join(u'\n'));
}

QString newNameInFull(const TFileObject &file, const Forecast &forecast, const Extension &extension)
{
    const QString shown = shownName(file) + extension.text;
    QString tip = ByteNames::forDisplay(shown);
    if (!isKnown(forecast))
        return tip;
    if (!forecast->refusal.isEmpty())
        tip += '\n'_L1 + text(kWouldFail).arg(forecast->refusal);
    else if (forecast->finalName != shown)
        tip += '\n'_L1 + text(kNameTaken).arg(ByteNames::forDisplay(forecast->finalName));
    return tip;
}

} // namespace FileCells
