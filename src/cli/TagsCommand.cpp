// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/TagsCommand.h"

#include "cli/JsonMetadata.h"
#include "cli/WholeFile.h"
#include "commonprocs/TimeUtils.h"
#include "metadata/EXIFSupport.h"
#include "metadata/TTagRule.h"

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kText{
    "Shows the metadata that the rules ImageTag, AudioTag and VideoTag see in each file, and the "
    "facts that Original uses. Text shows a property of an image as category:tag, and every value "
    "as a rule takes it; \":\" and \"/\" become \"_\" in names.\n"
    "Files are read by a program of their own, so that a damaged one does no harm; what cannot be "
    "read within two seconds counts as empty."};

constexpr QLatin1StringView kExamples{"tavrin-cli tags photos/IMG_2041.JPG\n"
                                      "tavrin-cli tags --json music/ > tags.json"};

constexpr MetadataGatherer::Kinds kAllKinds{MetadataGatherer::ImageProperties,
                                            MetadataGatherer::Media};

struct Fact
{
    QLatin1StringView name;
    QVariant value;
};

std::vector<Fact> factsOf(const TFileItem &file)
{
    return {{"size"_L1, file.facts.size},
            {"creationDate"_L1, TimeUtils::iso8601(file.facts.creation)},
            {"modificationDate"_L1, TimeUtils::iso8601(file.facts.modification)},
            {"parent"_L1, file.url.folder()->name()}};
}

QString textLine(QStringView name, const QVariant &value)
{
    return u"    %1 = %2"_s.arg(name, TTagRule::stringFromTagValue(value));
}

/// The lines of one dictionary, each name with its category, as a rule would have them.
void appendLines(QStringList &lines, const QString &category, const QVariantMap &values)
{
    for (auto it = values.begin(); it != values.end(); ++it)
        lines.append(textLine(category + u':' + it.key(), it.value()));
}

QStringList imageLines(const QVariantMap &image)
{
    QVariantMap general = image;
    QStringList dictionaries;
    for (const QString &category : EXIFSupport::categories()) {
        if (image.contains(category))
            appendLines(dictionaries, EXIFSupport::titleForCategory(category),
                        general.take(category).toMap());
    }
    QStringList lines;
    appendLines(lines, u"General"_s, general);
    return lines + dictionaries;
}

QStringList mediaLines(const QVariantMap &media)
{
    QStringList lines;
    for (auto it = media.begin(); it != media.end(); ++it)
        lines.append(textLine(it.key(), it.value()));
    return lines;
}

void appendOrNull(JsonWriter &json, const TMetadataPtr &metadata)
{
    if (metadata)
        appendMetadata(json, metadata->toVariantMap());
    else
        json.null();
}

} // namespace

TagsCommand::TagsCommand(CliEnvironment &environment)
    : Command(environment)
    , m_files(environment, console())
{
}

Command::Help TagsCommand::help() const
{
    return {"tags"_L1, "[--json] [--] PATH..."_L1,
            "show the metadata that the rules see for each file"_L1, kText, kExamples};
}

OptionGroups TagsCommand::optionGroups() const
{
    return {Console::batchOptions(), Console::commonOptions()};
}

int TagsCommand::run(const CommandLine &line)
{
    if (line.words().isEmpty())
        return usageError(u"no files: give paths"_s);
    takeOverSignals();
    const TResult<bool> collected = m_files.collect(line, FileExpansion::Detail::Everything);
    if (!collected)
        return refuse(ExitStatus::kUsageError, collected.message());
    if (!collected.value())
        return refuse(ExitStatus::kInterrupted, u"interrupted while files were listed"_s);
    if (!printAll()) {
        console().message(u"interrupted; not every file was read"_s);
        return ExitStatus::kInterrupted;
    }
    const bool complete = !m_files.files().empty() && m_files.missing() + m_unreadable == 0 &&
                          m_files.metadataProblem().isEmpty();
    return complete ? ExitStatus::kDone : ExitStatus::kIncomplete;
}

/// False when it was interrupted; the document is whole all the same.
bool TagsCommand::printAll()
{
    const bool isDocument = console().form() == Console::Form::Json;
    if (isDocument)
        m_json.beginArray();
    const std::unique_ptr<TMetadataSource> source = m_files.metadataSource(kAllKinds);
    qsizetype done = 0;
    bool stopped = false;
    for (const TFileItem &file : m_files.files()) {
        const TMetadataSource::Metadata metadata = source->metadataForFile(done);
        stopped = interrupted();
        if (stopped || environment().out.error() != 0)
            break;
        if (isReadable(file))
            printFile(file, metadata);
        console().progress().show("Reading"_L1, ++done,
                                  static_cast<qsizetype>(m_files.files().size()));
    }
    if (isDocument)
        printJson(m_json.newLine().endArray());
    return !stopped;
}

/// Says so of a file that is not, which counts as missing.
bool TagsCommand::isReadable(const TFileItem &file)
{
    const int error = environment().fileManager.access(file.url.fileSystemPath(), R_OK);
    if (error == 0)
        return true;
    ++m_unreadable;
    console().message(u"%1: %2"_s.arg(file.url.path(), reasonNotToOpen(error)));
    return false;
}

void TagsCommand::printFile(const TFileItem &file, const TMetadataSource::Metadata &metadata)
{
    if (!console().isJson())
        return printText(file, metadata);
    const bool isDocument = console().form() == Console::Form::Json;
    if (isDocument)
        m_json.newLine();
    m_json.beginObject();
    m_json.key("path"_L1).value(file.url.path());
    appendOrNull(m_json.key("image"_L1), metadata.imageProperties);
    appendOrNull(m_json.key("media"_L1), metadata.id3);
    m_json.key("facts"_L1).beginObject();
    for (const Fact &fact : factsOf(file))
        appendMetadata(m_json.key(fact.name), fact.value);
    m_json.endObject().endObject();
    console().print(m_json.bytes());
    m_json.clear();
    if (!isDocument)
        console().print("\n");
}

void TagsCommand::printText(const TFileItem &file, const TMetadataSource::Metadata &metadata)
{
    QStringList lines{file.url.path()};
    if (metadata.imageProperties)
        lines += imageLines(metadata.imageProperties->toVariantMap());
    if (metadata.id3)
        lines += mediaLines(metadata.id3->toVariantMap());
    for (const Fact &fact : factsOf(file))
        lines.append(textLine("Original:"_L1 + QString(fact.name), fact.value));
    for (const QString &line : lines)
        console().printLine(line);
}
