// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/RuleSettings.h"

#include "metadata/EXIFSupport.h"
#include "metadata/ID3AVSupport.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

using enum SettingType;

constexpr SettingInfo kPaddingChar{
    "paddingChar"_L1, Integer,
    "character to pad with: 0 \"0\", 1 a blank, 2 \"*\", 3 \"-\", 4 \"_\", any other \"x\""_L1, 5};

QStringList imageCategories()
{
    QStringList titles;
    for (const QString &key : EXIFSupport::categories())
        titles.append(EXIFSupport::titleForCategory(key));
    return titles;
}

constexpr std::array kDateSettings{
    SettingInfo{"padding"_L1, Integer,
                "pad the text to this many characters; below 1: not at all"_L1},
    kPaddingChar,
    SettingInfo{"paddingPosition"_L1, Integer, "where to pad: 0 in front, otherwise at the end"_L1,
                2},
    SettingInfo{"limitSize"_L1, Integer,
                "0: keep every length; otherwise cut to maxSize characters"_L1, 2},
    SettingInfo{"maxSize"_L1, Integer, "the length to cut to when limitSize is set"_L1},
    SettingInfo{"dateFormat"_L1, Integer,
                "element of the date: 0 long date, 1 medium date, 2 long time, 3 medium time, "
                "4 year, 5 two-digit year, 6 name of the month, 7 month, 8 day, 9 name of the "
                "weekday, 10 weekday (1 is Sunday), 11 hour, 12 minute, 13 second, 14 AM or PM, "
                "15 A or P"_L1,
                16},
    SettingInfo{"timeFormat"_L1, Integer,
                "hours: 0 of a twelve-hour clock, otherwise of twenty-four"_L1, 2},
};

constexpr std::array kTextSettings{
    SettingInfo{"theText"_L1, Text, "the text to put into every name"_L1},
};

constexpr std::array kCounterSettings{
    SettingInfo{"startValue"_L1, Integer, "the first number"_L1},
    SettingInfo{"individualFileTypes"_L1, Boolean, "count every extension on its own"_L1},
    SettingInfo{"counterFormat"_L1, Integer,
                "0 decimal, 1 lower-case Roman, 2 upper-case Roman numerals"_L1, 3},
    SettingInfo{"padding"_L1, Integer, "the width of the number when manualPadding is set"_L1},
    kPaddingChar,
    SettingInfo{"increment"_L1, Integer, "the step from one number to the next"_L1},
    SettingInfo{"manualPadding"_L1, Integer,
                "width: 0 what the last number of the batch needs, otherwise padding"_L1, 2},
    SettingInfo{"counterType"_L1, Integer,
                "0 a running number, otherwise the number of files in the batch"_L1, 2},
};

constexpr std::array kOriginalSettings{
    SettingInfo{"whichProperty"_L1, Integer,
                "0 file name, 1 name of a parent folder, 2 size, 3 date, 4 extension"_L1, 5},
    SettingInfo{"sizeFormat"_L1, Integer,
                "unit of the size: 0 automatic, 1 B, 2 KB, 3 MB, 4 GB, 5 TB"_L1, 6},
    SettingInfo{"showSizeUnit"_L1, Boolean, "write the unit after the size"_L1},
    SettingInfo{"separateUnit"_L1, Boolean, "put a blank between size and unit"_L1},
    SettingInfo{"dropFromBeginning"_L1, Integer, "remove this many characters in front"_L1},
    SettingInfo{"dropFromEnd"_L1, Integer, "remove this many characters at the end"_L1},
    SettingInfo{"postprocessing"_L1, Integer, "kept with the rule; names do not depend on it"_L1},
    SettingInfo{"caseConversion"_L1, Integer, "0 as it is, 1 upper case, 2 lower case"_L1, 3},
    SettingInfo{"blankHandling"_L1, Integer,
                "0 as they are, 1 remove blanks, 2 insert one where a capital follows a small "
                "letter"_L1,
                3},
    SettingInfo{"caseSensitiveSearch"_L1, Integer,
                "search for stringToLookFor: 0 letter case matters, otherwise it does not"_L1, 2},
    SettingInfo{"stringToReplace"_L1, Text, "what to put in place of stringToLookFor"_L1},
    SettingInfo{"stringToLookFor"_L1, Text,
                "text to replace wherever it occurs; empty: nothing"_L1},
    SettingInfo{"whichDate"_L1, Integer, "0 creation date, otherwise modification date"_L1, 2},
    SettingInfo{"parentLevel"_L1, Integer,
                "0 the folder of the file, 1 the one above it, and so on"_L1},
    SettingInfo{"charsToStrip"_L1, Text, "every one of these characters is removed"_L1},
};

constexpr std::array kImageTagSettings{
    SettingInfo{"category"_L1, Text, "the group of properties that holds the tag"_L1, 0, true,
                imageCategories},
    SettingInfo{"theTag"_L1, Text, "the tag, such as PixelWidth or DateTimeOriginal"_L1},
    SettingInfo{"defaultString"_L1, Text, "text for files that do not have the tag"_L1},
};

constexpr std::array kMediaTagSettings{
    SettingInfo{"theTag"_L1, Text, "the tag, such as title, artist, track or duration"_L1, 0, false,
                ID3AVSupport::tags},
    SettingInfo{"defaultString"_L1, Text, "text for files that do not have the tag"_L1},
};

constexpr std::array kCsvSettings{
    SettingInfo{"theRows"_L1, Table,
                "the table, one row a file; file=NAME.csv reads it from a file"_L1},
    SettingInfo{"useColumn"_L1, Integer, "the column to use; the first is 0"_L1},
    SettingInfo{"skipFirst"_L1, Boolean, "the first row holds titles and is never used"_L1},
    SettingInfo{"wrap"_L1, Boolean, "start again at the top when the rows run out"_L1},
    SettingInfo{"trimQuotes"_L1, Boolean, "remove the double quotes around a cell"_L1},
    SettingInfo{"defaultText"_L1, Text, "text for files that have no cell"_L1},
};

constexpr std::array kRegExSettings{
    SettingInfo{"regArray"_L1, Pairs,
                "patterns and replacements, applied in order; match=PATTERN replace=TEXT gives one "
                "pair"_L1},
    SettingInfo{"source"_L1, Integer,
                "rewrite: 0 the file's name, otherwise the name made so far"_L1, 2},
    SettingInfo{"replaceAll"_L1, Integer,
                "with a source other than 0: 0 append the rewritten text, otherwise replace the "
                "whole name by it"_L1,
                2},
};

constexpr std::array kSeparatorSettings{
    SettingInfo{"theText"_L1, Text, "the character itself; always follows from separatorIndex"_L1,
                0, false, nullptr, true},
    SettingInfo{"separatorIndex"_L1, Integer,
                "0 a blank, 1 \"_\", 2 \"-\", 3 \"*\", 4 \".\", 5 \"!\", 6 \"(\", 7 \")\", "
                "8 \"{\", 9 \"}\""_L1,
                10, true},
};

constexpr std::array kExtensionSettings{
    SettingInfo{"handlingMethod"_L1, Integer,
                "0 keep, 1 replace, 2 map, 3 strip, 4 rewrite with a regular expression"_L1, 5},
    SettingInfo{
        "mapArray"_L1, Pairs,
        "extensions and what becomes of them, for method 2; map=htm:html,jpeg:jpg gives the "
        "pairs"_L1},
    SettingInfo{"replacer"_L1, Text,
                "the extension for method 1, and for method 2 where no pair fits"_L1},
    SettingInfo{"caseHandling"_L1, Integer, "method 0: 0 as it is, 1 upper case, 2 lower case"_L1,
                3},
    SettingInfo{"mapRemainderChoice"_L1, Integer,
                "method 2 where no pair fits: 0 keep the extension, otherwise use replacer"_L1, 2},
    SettingInfo{"ignoreCase"_L1, Integer,
                "method 2: 0 letter case matters, otherwise it does not"_L1, 2},
    SettingInfo{"regEx"_L1, Text, "method 4: the pattern"_L1},
    SettingInfo{"regAccess"_L1, Integer,
                "method 4 rewrites: 0 the whole name, 1 the name without extension, 2 the "
                "extension"_L1,
                3},
    SettingInfo{"rePattern"_L1, Text, "method 4: the replacement"_L1},
};

constexpr std::array kKinds{
    RuleKindInfo{"Text"_L1, "a constant text"_L1, kTextSettings, {}},
    RuleKindInfo{"Counter"_L1, "a running number"_L1, kCounterSettings, {}},
    RuleKindInfo{"Original"_L1, "the file's own name, folder, size, date or extension"_L1,
                 kOriginalSettings, kDateSettings},
    RuleKindInfo{"Date"_L1, "the date or time of the renaming"_L1, {}, kDateSettings},
    RuleKindInfo{"ImageTag"_L1, "a property stored in an image"_L1, kImageTagSettings,
                 kDateSettings},
    RuleKindInfo{"AudioTag"_L1, "a tag stored in an audio file"_L1, kMediaTagSettings,
                 kDateSettings},
    RuleKindInfo{"VideoTag"_L1, "a tag stored in a video file"_L1, kMediaTagSettings,
                 kDateSettings},
    RuleKindInfo{"CSVTag"_L1, "a cell of a table, one row a file"_L1, kCsvSettings, {}},
    RuleKindInfo{"RegExTag"_L1, "a rewrite with regular expressions"_L1, kRegExSettings, {}},
    RuleKindInfo{"Separator"_L1, "one separating character"_L1, kSeparatorSettings, {}},
};

const SettingInfo *findSetting(std::span<const SettingInfo> settings, const QString &key)
{
    const auto found =
        std::find_if(settings.begin(), settings.end(),
                     [&key](const SettingInfo &setting) { return setting.key == key; });
    return found == settings.end() ? nullptr : &*found;
}

} // namespace

const SettingInfo *RuleKindInfo::setting(const QString &key) const
{
    const SettingInfo *found = findSetting(own, key);
    return found != nullptr ? found : findSetting(inherited, key);
}

std::vector<SettingInfo> RuleKindInfo::settings() const
{
    std::vector<SettingInfo> all(own.begin(), own.end());
    all.insert(all.end(), inherited.begin(), inherited.end());
    return all;
}

namespace RuleSettings {

std::span<const RuleKindInfo> kinds()
{
    return kKinds;
}

const RuleKindInfo *kind(const QString &identifier)
{
    const auto found =
        std::find_if(kKinds.begin(), kKinds.end(),
                     [&identifier](const RuleKindInfo &kind) { return kind.kind == identifier; });
    return found == kKinds.end() ? nullptr : &*found;
}

QStringList kindNames()
{
    QStringList names;
    for (const RuleKindInfo &kind : kKinds)
        names.append(kind.kind);
    return names;
}

std::span<const SettingInfo> extensionSettings()
{
    return kExtensionSettings;
}

QLatin1StringView typeName(SettingType type)
{
    static constexpr std::array kNames{"integer"_L1, "boolean"_L1, "text"_L1, "pairs"_L1,
                                       "table"_L1};
    return kNames[static_cast<std::size_t>(type)];
}

QStringList possibleValues(const SettingInfo &setting)
{
    if (setting.texts != nullptr)
        return setting.texts();
    QStringList values;
    for (int i = 0; i < setting.choices; ++i)
        values.append(QString::number(i));
    return values;
}

} // namespace RuleSettings
