// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/Translations.h"

#include "ui/windows/UiSettings.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kFolder{":/i18n"};
constexpr QLatin1StringView kOwn{"tavrin"};
constexpr QLatin1StringView kQt{"qtbase"};
constexpr QLatin1StringView kEnglish{"en"};

void load(const QLocale &locale, const QString &name, const QString &folder)
{
    auto translator = std::make_unique<QTranslator>();
    if (!translator->load(locale, name, u"_"_s, folder))
        return;
    translator->setParent(QCoreApplication::instance());
    QCoreApplication::installTranslator(translator.release()); // the application's now
}

/// English when the language is none of those that there are.
QLocale spoken(const QString &wanted)
{
    const QStringList codes = Translations::available();
    const QStringList candidates =
        wanted.isEmpty() ? QLocale::system().uiLanguages() : QStringList{wanted};
    for (const QString &candidate : candidates) {
        const QLocale locale(candidate);
        for (const QString &code : codes) {
            if (QLocale(code).language() == locale.language())
                return locale;
        }
    }
    return QLocale(kEnglish);
}

} // namespace

namespace Translations {

QStringList available()
{
    QStringList codes{kEnglish};
    const QStringList files = QDir(kFolder).entryList({kOwn + "_*.qm"_L1}, QDir::Files);
    for (const QString &file : files)
        codes += file.section(u'_', 1).chopped(3);
    codes.removeDuplicates();
    codes.sort();
    return codes;
}

QString nativeName(const QString &code)
{
    const QLocale locale(code);
    // "American English" would promise another English.
    const QString name = code == kEnglish ? u"English"_s : locale.nativeLanguageName();
    return name.isEmpty() ? code : name;
}

void install()
{
    const QLocale locale = spoken(UiSettings::language());
    load(locale, kOwn, kFolder);
    if (locale.language() != QLocale::English)
        load(locale, kQt, QLibraryInfo::path(QLibraryInfo::TranslationsPath));
}

} // namespace Translations
