// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/TEditOriginalViewController.h"

#include "commonprocs/ByteNames.h"

using namespace Qt::StringLiterals;

namespace {

enum Property : qint64 { FileName, ParentFolder, FileSize, FileDate, Extension };

constexpr qint64 kUnits = 5;
constexpr NumberField::Range kDrops{0, 255};
constexpr NumberField::Range kFolders{1, 999};
constexpr QStringView kExample = u"%1  \u2013  %2";
constexpr qsizetype kLongestExample = 24;
constexpr QChar kEllipsis(0x2026);

QString shortened(const QString &text)
{
    return text.size() > kLongestExample ? text.first(kLongestExample - 1) + kEllipsis : text;
}

QString withExample(const QString &words, const QString &example)
{
    return example.isEmpty()
               ? words
               : kExample.toString().arg(words, ByteNames::forDisplay(shortened(example)));
}

QString sizeText(const TFileObject &file, qint64 format)
{
    // Not a new rule, which would take a colour.
    const std::shared_ptr<TOriginalRule> rule = TOriginalRule::decoding();
    rule->setSizeFormat(format);
    rule->setShowSizeUnit(true);
    rule->setSeparateUnit(true);
    return rule->getFileSizeFrom(file);
}

/// Counted as the tile does: the folder that holds the file is one up.
Setting<qint64> foldersUp(TOriginalRule &rule)
{
    const auto moved = [](qint64 level, qint64 by) {
        return static_cast<qint64>(static_cast<quint64>(level) + static_cast<quint64>(by));
    };
    return {[&rule, moved] { return moved(rule.parentLevel(), 1); },
            [&rule, moved](qint64 up) { rule.setParentLevel(moved(up, -1)); }};
}

/// Everything that is no unit is the automatic one.
Setting<qint64> unit(TOriginalRule &rule)
{
    return {[&rule] {
                const qint64 format = rule.sizeFormat();
                return format >= 0 && format <= kUnits ? format : 0;
            },
            [&rule](qint64 format) { rule.setSizeFormat(format); }};
}

} // namespace

TEditOriginalViewController::TEditOriginalViewController(const TRulePtr &rule,
                                                         const EditorContext &context)
    : TRuleViewController(rule, context)
    , m_source(form().choice(
          {{FileName, {}}, {ParentFolder, {}}, {FileSize, {}}, {FileDate, {}}, {Extension, {}}},
          settingOf(original(), &TOriginalRule::whichProperty, &TOriginalRule::setWhichProperty)))
{
    form().setNote(tr("of the file as it is"));
    form().addRow(tr("&Take"), {m_source});
    addFolderRow();
    addSizeRows();
    addDateRows();
    addTextRows();
    m_length.emplace(form(), original());
    finish(m_source);
}

void TEditOriginalViewController::addFolderRow()
{
    NumberField *level = form().number(foldersUp(original()), kFolders);
    m_folder = form().words(QString());
    m_folderRow = form().addRow(tr("Folders &up"), {level, m_folder});
}

void TEditOriginalViewController::addSizeRows()
{
    m_unit =
        form().choice({{0, {}}, {1, {}}, {2, {}}, {3, {}}, {4, {}}, {5, {}}}, unit(original()));
    m_unitRow = form().addRow(tr("&Unit"), {m_unit});
    QCheckBox *shows =
        form().check(tr("after the number"), settingOf(original(), &TOriginalRule::showSizeUnit,
                                                       &TOriginalRule::setShowSizeUnit));
    EditorForm::setName(shows, tr("Unit after the number"));
    m_unitBlank =
        form().check(tr("with a blank"), settingOf(original(), &TOriginalRule::separateUnit,
                                                   &TOriginalRule::setSeparateUnit));
    EditorForm::setName(m_unitBlank, tr("Blank before the unit"));
    m_unitShownRow = form().addRow(tr("Show unit"), {shows, m_unitBlank});
}

void TEditOriginalViewController::addDateRows()
{
    m_whichDate = form().choice({{0, {}}, {1, {}}}, eitherOf(original(), &TOriginalRule::whichDate,
                                                             &TOriginalRule::setWhichDate));
    m_whichDateRow = form().addRow(tr("&Date of"), {m_whichDate});
    m_date.emplace(form(), original());
}

void TEditOriginalViewController::addTextRows()
{
    TOriginalRule &rule = original();
    NumberField *front = form().number(
        settingOf(rule, &TOriginalRule::dropFromBeginning, &TOriginalRule::setDropFromBeginning),
        kDrops);
    NumberField *end = form().number(
        settingOf(rule, &TOriginalRule::dropFromEnd, &TOriginalRule::setDropFromEnd), kDrops);
    EditorForm::setName(front, tr("Characters to leave out in front"));
    EditorForm::setName(end, tr("Characters to leave out at the end"));
    m_dropRow = form().addRow(tr("&Leave out"), {front, form().words(tr("in front,")), end,
                                                 form().words(tr("at the end"))});

    QLineEdit *needle = form().text(
        settingOf(rule, &TOriginalRule::stringToLookFor, &TOriginalRule::setStringToLookFor));
    m_ignoresCase = form().check(tr("any case"), switchOf(rule, &TOriginalRule::caseSensitiveSearch,
                                                          &TOriginalRule::setCaseSensitiveSearch));
    m_ignoresCase->setToolTip(tr("Capital and small letters count as the same."));
    m_searchRow = form().addRow(tr("Loo&k for"), {needle, m_ignoresCase});
    m_replacement = form().text(
        settingOf(rule, &TOriginalRule::stringToReplace, &TOriginalRule::setStringToReplace));
    m_replaceRow = form().addRow(tr("Re&place by"), {m_replacement});

    QLineEdit *strip =
        form().text(settingOf(rule, &TOriginalRule::charsToStrip, &TOriginalRule::setCharsToStrip));
    strip->setToolTip(tr("Each of these characters is removed wherever it occurs."));
    m_stripRow = form().addRow(tr("Remove &all of"), {strip});

    m_blanksRow = form().addRow(
        tr("Bla&nks"),
        {form().choice(
            {{0, tr("as they are")}, {1, tr("removed")}, {2, tr("one before capitals")}},
            settingOf(rule, &TOriginalRule::blankHandling, &TOriginalRule::setBlankHandling))});
    m_lettersRow = form().addRow(
        tr("Letter&s"),
        {form().choice(
            {{0, tr("as they are")}, {1, tr("CAPITALS")}, {2, tr("small letters")}},
            settingOf(rule, &TOriginalRule::caseConversion, &TOriginalRule::setCaseConversion))});
}

void TEditOriginalViewController::refresh()
{
    const qint64 property = original().whichProperty();
    const bool isWritten = property == FileName || property == Extension;
    const bool isText = isWritten || property == ParentFolder;
    const std::shared_ptr<TFileObject> sample = sampleFile();
    const TFileObject none;
    const TFileObject &file = sample ? *sample : none;

    refreshSources(file);
    m_folderRow.setVisible(property == ParentFolder);
    refreshFolder(file);
    m_unitRow.setVisible(property == FileSize);
    m_unitShownRow.setVisible(property == FileSize);
    m_unitBlank->setEnabled(original().showSizeUnit());
    refreshUnits(file);
    m_whichDateRow.setVisible(property == FileDate);
    m_date->refresh(original().whichDate() == 0 ? file.creationDate() : file.modificationDate(),
                    property == FileDate);
    for (const EditorForm::Row &row : {m_dropRow, m_stripRow, m_blanksRow, m_lettersRow})
        row.setVisible(isText);
    for (const EditorForm::Row &row : {m_searchRow, m_replaceRow})
        row.setVisible(isWritten);
    const bool replaces = !original().stringToLookFor().isEmpty();
    m_replaceRow.setEnabled(replaces);
    m_ignoresCase->setEnabled(replaces);
    m_length->refresh(isText || property == FileDate ? LengthRows::Reach::Full
                      : property == FileSize         ? LengthRows::Reach::FrontOnly
                                                     : LengthRows::Reach::Nothing);
}

void TEditOriginalViewController::refreshSources(const TFileObject &file)
{
    const bool isReal = file.sourceURL().isValid();
    const std::shared_ptr<TDateRule> date = TDateRule::decoding();
    date->setDateFormat(1);
    const TDate shown = original().whichDate() == 0 ? file.creationDate() : file.modificationDate();
    EditorForm::setChoices(
        m_source,
        {{FileName, withExample(tr("name"), file.fileName())},
         {ParentFolder,
          withExample(tr("folder"), TOriginalRule::getParentFrom(file, original().parentLevel()))},
         {FileSize, withExample(tr("size"), isReal ? sizeText(file, 0) : QString())},
         {FileDate, withExample(tr("date"), date->getDateFromDate(shown))},
         {Extension, withExample(tr("extension"), file.extension())}});
}

void TEditOriginalViewController::refreshUnits(const TFileObject &file)
{
    const bool isReal = file.sourceURL().isValid();
    const QString words[] = {tr("automatic"), tr("bytes"),     tr("kilobytes"),
                             tr("megabytes"), tr("gigabytes"), tr("terabytes")};
    std::vector<EditorForm::Choice> choices;
    for (qint64 format = 0; format <= kUnits; ++format)
        choices.push_back(
            {format, withExample(words[format], isReal ? sizeText(file, format) : QString())});
    EditorForm::setChoices(m_unit, choices);

    const std::shared_ptr<TDateRule> date = TDateRule::decoding();
    date->setDateFormat(1);
    EditorForm::setChoices(
        m_whichDate,
        {{0, withExample(tr("creation"), date->getDateFromDate(file.creationDate()))},
         {1, withExample(tr("last change"), date->getDateFromDate(file.modificationDate()))}});
}

void TEditOriginalViewController::refreshFolder(const TFileObject &file)
{
    m_folder->setText(shortened(TOriginalRule::getParentFrom(file, original().parentLevel())));
}
