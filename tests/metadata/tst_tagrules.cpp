// SPDX-License-Identifier: GPL-3.0-or-later
#include "metadata/EXIFSupport.h"
#include "metadata/FileConformance.h"
#include "metadata/ID3AVSupport.h"
#include "metadata/TImageTagRule.h"
#include "metadata/TVideoRule.h"
#include "platform/TDate.h"
#include "platform/TypeIdentifiers.h"
#include "support/Table.h"
#include "support/TemporaryTree.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace {

TFileItem item(const QString &path, TFileStatus::Kind kind = TFileStatus::Kind::File)
{
    TFileItem item{TFileURL::fileURLWithPath(path), {}};
    item.facts.kind = kind;
    return item;
}

QVariantMap photo()
{
    return {{u"PixelWidth"_s, 4032},
            {u"DPIWidth"_s, 72.0},
            {u"HasAlpha"_s, true},
            {u"{Exif}"_s,
             QVariantMap{{u"ExposureTime"_s, 1.0 / 60}, {u"ISOSpeedRatings"_s, QVariantList{200}}}},
            {u"{ExifAux}"_s, QVariantMap{{u"LensInfo"_s, QVariantList{24.0, 70, 2.8, 2.8}}}},
            {u"{GPS}"_s, QVariantMap{{u"GPSVersion"_s, QVariantList{2, 2, 0, 0}}}}};
}

const QVariantMap kSong{{u"title"_s, u"Song"_s},
                        {u"track"_s, u"3"_s},
                        {u"creationDate"_s, QVariant::fromValue(TDate::fromSeconds(0))}};

} // namespace

class TagRulesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void turnsValuesIntoText_data()
    {
        const Table<QVariant, QString> row("value", "expected");

        row("text", QVariant(u" a "_s), u" a ");
        row("integer", QVariant(-3), u"-3");
        row("large", QVariant(std::numeric_limits<qulonglong>::max()), u"18446744073709551615");
        row("true", QVariant(true), u"1");
        row("false", QVariant(false), u"0");
        row("whole", QVariant(72.0), u"72");
        row("fraction", QVariant(2.8), u"2.8");
        row("small", QVariant(0.004), u"0.004");
        row("periodic", QVariant(1.0 / 60), u"0.01666666666666667");
        row("tiny", QVariant(1.25e-7), u"1.25e-07");
        row("huge", QVariant(1e20), u"1e+20");
        row("sixteen digits", QVariant(0.1 + 0.2), u"0.3");
        row("array", QVariant(QVariantList{2, 2, 0, 0}), u"2.2.0.0");
        row("one element", QVariant(QVariantList{200}), u"200");
        row("no elements", QVariant(QVariantList{}), u"");
        row("texts", QVariant(QStringList{u"a"_s, u"b"_s}), u"a.b");
        row("nested", QVariant(QVariantList{1, QVariantList{2.5, u"x"_s}, QVariantMap{}}),
            u"1.2.5.x.(unknown class:NSDictionary)");
        row("dictionary", QVariant(QVariantMap{{u"a"_s, 1}}), u"(unknown class:NSDictionary)");
        row("date", QVariant::fromValue(TDate::fromSeconds(1)), u"(unknown class:NSDate)");
        row("data", QVariant(QByteArray("abc")), u"(unknown class:NSData)");
    }

    void turnsValuesIntoText()
    {
        QFETCH(QVariant, value);
        QFETCH(QString, expected);
        QCOMPARE(TTagRule::stringFromTagValue(value), expected);
    }

    void takesImageTags_data()
    {
        const Table<QString, TMetadataPtr, QString, QString, QString, int, QString> row(
            "path", "metadata", "category", "tag", "expected", "level", "problem");

        const QString path = u"/a b/x.jpg"_s;
        const TMetadataPtr full = TMetadata::fromVariantMap(photo());
        const auto value = [&](const char *category, const char *tag, const char *expected) {
            QTest::addRow("%s %s", category, tag)
                << path << full << QString::fromLatin1(category) << QString::fromLatin1(tag)
                << QString::fromLatin1(expected) << 0 << QString();
        };
        value("General", "PixelWidth", "4032");
        value("General", "DPIWidth", "72");
        value("General", "HasAlpha", "1");
        value("General", "{GPS}", "(unknown class:NSDictionary)");
        value("Exif", "ExposureTime", "0.01666666666666667");
        value("Exif", "ISOSpeedRatings", "200");
        value("Exif Aux", "LensInfo", "24.70.2.8.2.8");
        value("GPS", "GPSVersion", "2.2.0.0");

        const auto problem = [&row](const char *title, const QString &file,
                                    const TMetadataPtr &metadata, const char *category,
                                    const char *tag, int level, const char *text) {
            row(title, file, metadata, QString::fromLatin1(category), QString::fromLatin1(tag),
                u"default", level, QString::fromLatin1(text));
        };
        problem("no image", u"/a/x.txt"_s, full, "Exif", "FNumber", 1,
                "Image Meta data request: Exif:FNumber -- File is not an image. Default text used. "
                "File: /a/x.txt");
        problem("not read", path, nullptr, "Exif", "FNumber", 2,
                "/a b/x.jpg meta data not yet processed, not yet ready to run. Default text used");
        problem("nothing there", path, TMetadata::fromVariantMap({}), "Exif", "FNumber", 1,
                "Image Meta data request: Exif:FNumber -- No meta data. Default text used. "
                "File: /a b/x.jpg");
        problem("no such category", path, full, "Maker Nikon", "Quality", 1,
                "Image Meta data request: Maker Nikon:Quality -- No 'Maker Nikon' meta data. "
                "Default text used. File: /a b/x.jpg");
        problem("general is exact", path, full, "general", "PixelWidth", 1,
                "Image Meta data request: general:PixelWidth -- No 'general' meta data. "
                "Default text used. File: /a b/x.jpg");
        problem(
            "no such tag", path, full, "Exif Aux", "%@", 1,
            "No value for '%@' in its 'Exif Aux' meta data. Default text used. File: /a b/x.jpg");
        problem("no such general tag", path, full, "General", "Depth", 1,
                "No value for 'Depth' in its 'General' meta data. Default text used. "
                "File: /a b/x.jpg");
    }

    void takesImageTags()
    {
        QFETCH(QString, path);
        QFETCH(TMetadataPtr, metadata);
        QFETCH(QString, category);
        QFETCH(QString, tag);
        QFETCH(QString, expected);
        QFETCH(int, level);
        QFETCH(QString, problem);

        TImageTagRule rule;
        rule.setCategory(category);
        rule.setTheTag(tag);
        rule.setDefaultString(u"default"_s);
        TFileObject file(item(path), metadata);
        TErrorLog log;
        TRuleDict dict;
        QCOMPARE(rule.processWithFileObject(file, &log, dict), expected);
        QCOMPARE(file.errLog(), log);
        QCOMPARE(log.currentStatus(), level);
        QCOMPARE(log.isEmpty() ? QString() : log.entries().front().errDesc.toString(), problem);
        QVERIFY(log.count() <= 1);
    }

    void takesMediaTags_data()
    {
        const Table<bool, QString, TMetadataPtr, QString, QString, int, QString> row(
            "video", "path", "metadata", "tag", "expected", "level", "problem");

        const TMetadataPtr song = TMetadata::fromVariantMap(kSong);
        row("title", false, u"/a/x.mp3", song, u"title", u"Song", 0, QString());
        row("video title", true, u"/a/x.mp4", song, u"title", u"Song", 0, QString());
        row("date", false, u"/a/x.mp3", song, u"creationDate", u"(unknown class:NSDate)", 0,
            QString());
        row("never there", false, u"/a/x.mp3", song, u"creationDate+", u"default", 1,
            u"No value for 'creationDate+' in meta data. Default text used. File: /a/x.mp3");
        row("audio for video", true, u"/a/x.mp3", song, u"title", u"default", 1,
            u"Video Meta data request: title -- File is not Video. Default text used. "
            "File: /a/x.mp3");
        row("text for audio", false, u"/a/x.txt", song, u"track", u"default", 1,
            u"Audio Meta data request: track -- File is not Audio. Default text used. "
            "File: /a/x.txt");
        row("not read", false, u"/a/x.mp3", TMetadataPtr(), u"title", u"default", 2,
            u"/a/x.mp3 meta data not yet processed, not yet ready to run. Default text used");
        row("nothing there", true, u"/a/x.mov", TMetadata::fromVariantMap({}), u"title", u"default",
            1,
            u"Video Meta data request: title -- No meta data. Default text used. "
            "File: /a/x.mov");
    }

    void takesMediaTags()
    {
        QFETCH(bool, video);
        QFETCH(QString, path);
        QFETCH(TMetadataPtr, metadata);
        QFETCH(QString, tag);
        QFETCH(QString, expected);
        QFETCH(int, level);
        QFETCH(QString, problem);

        const auto rule = video ? std::make_shared<TVideoRule>() : std::make_shared<TAudioRule>();
        rule->setTheTag(tag);
        rule->setDefaultString(u"default"_s);
        TFileObject file(item(path), {}, metadata);
        TErrorLog log;
        TRuleDict dict;
        QCOMPARE(rule->processWithFileObject(file, &log, dict), expected);
        QCOMPARE(file.errLog(), log);
        QCOMPARE(log.currentStatus(), level);
        QCOMPARE(log.isEmpty() ? QString() : log.entries().front().errDesc.toString(), problem);
        QVERIFY(log.count() <= 1);
    }

    void padsAndLimitsValuesAndDefaults()
    {
        TAudioRule rule;
        rule.setPadding(4);
        rule.setPaddingChar(0);
        rule.setDefaultString(u"none"_s);
        TFileObject file(item(u"/a/x.mp3"_s), {}, TMetadata::fromVariantMap(kSong));
        TRuleDict dict;
        rule.setTheTag(u"track"_s);
        QCOMPARE(rule.processWithFileObject(file, nullptr, dict), u"0003"_s);
        rule.setPadding(6);
        rule.setLimitSize(1);
        rule.setMaxSize(3);
        rule.setTheTag(u"absent"_s);
        QCOMPARE(rule.processWithFileObject(file, nullptr, dict), u"00n"_s);
    }

    void startsWithItsOwnSettings()
    {
        const TImageTagRule image;
        QCOMPARE(image.theTag(), u"PixelWidth"_s);
        QCOMPARE(image.category(), u"General"_s);
        QCOMPARE(image.thePreview(), TImage(u"image_tag_white"_s));
        QVERIFY(!image.defaultString().isNull());
        QCOMPARE(image.padding(), 0);
        QCOMPARE(image.paddingChar(), 1);
        QCOMPARE(image.limitSize(), 0);
        QCOMPARE(image.maxSize(), 20);
        const TAudioRule audio;
        QCOMPARE(audio.theTag(), u"title"_s);
        QCOMPARE(audio.thePreview(), TImage(u"music_tag"_s));
        QCOMPARE(TVideoRule().thePreview(), TImage(u"movie_tag"_s));
        QCOMPARE(TVideoRule().theTag(), u"title"_s);
    }

    void showsItsTag()
    {
        TImageTagRule image;
        QCOMPARE(image.name(), u"General:PixelWidth"_s);
        image.setCategory(u"Exif Aux"_s);
        image.setTheTag(u"LensModel"_s);
        image.updatePreview();
        QCOMPARE(image.name(), u"Exif Aux:LensModel"_s);
        TVideoRule video;
        QCOMPARE(video.name(), u"(title)"_s);
        video.setTheTag(u"durationHMS"_s);
        video.updatePreview();
        QCOMPARE(video.name(), u"(durationHMS)"_s);
    }

    void keepsItsKind()
    {
        TVideoRule video;
        video.setFileUTI(TypeIdentifiers::kAudio);
        video.setUtiString(u"Other"_s);
        video.setProperties({});
        QCOMPARE(video.fileUTI(), TypeIdentifiers::kMovie);
        QCOMPARE(video.utiString(), u"Video"_s);
        QCOMPARE(TVideoRule::decoding()->editingViewController(), video.editingViewController());
        const auto copy = std::dynamic_pointer_cast<TAudioRule>(video.copy());
        QCOMPARE(copy->utiString(), u"Video"_s);
    }

    void anUnsetDefaultBecomesEmpty()
    {
        TImageTagRule rule;
        rule.setDefaultString(QString());
        QVERIFY(!rule.properties().contains(u"defaultString"_s));
        TFileObject file(item(u"/a/x.txt"_s));
        TRuleDict dict;
        const QString fragment = rule.processWithFileObject(file, nullptr, dict);
        QVERIFY(fragment.isEmpty() && !fragment.isNull());
        QVERIFY(rule.properties().contains(u"defaultString"_s));
    }

    void knowsTheTypesOfFiles_data()
    {
        const Table<QString, int, QString, bool> row("path", "kind", "type", "conforms");

        const int file = static_cast<int>(TFileStatus::Kind::File);
        const int folder = static_cast<int>(TFileStatus::Kind::Folder);
        const int link = static_cast<int>(TFileStatus::Kind::Link);
        const QString image(TypeIdentifiers::kImage);
        row("photo", u"/a/x.JPEG", file, image, true);
        row("link", u"/a/x.jpg", link, image, true);
        row("folder", u"/a/x.jpg", folder, image, false);
        row("leading dot", u"/a/.jpg", file, image, false);
        row("song is no image", u"/a/x.mp3", file, image, false);
        row("movie is audiovisual", u"/a/x.mov", file,
            QString(TypeIdentifiers::kAudiovisualContent), true);
        row("movie is no audio", u"/a/x.mov", file, QString(TypeIdentifiers::kAudio), false);
    }

    void knowsTheTypesOfFiles()
    {
        QFETCH(QString, path);
        QFETCH(int, kind);
        QFETCH(QString, type);
        QFETCH(bool, conforms);
        const QByteArray identifier = type.toLatin1();
        QCOMPARE(fileConformsTo(item(path, static_cast<TFileStatus::Kind>(kind)),
                                QLatin1StringView(identifier)),
                 conforms);
    }

    void looksIntoTransportStreams()
    {
        const TemporaryTree tree;
        const QByteArray packet = QByteArray(1, 0x47) + QByteArray(187, '\0');
        const auto isMovie = [](const QString &path) {
            return fileConformsTo(item(path), TypeIdentifiers::kMovie);
        };
        QVERIFY(isMovie(tree.file(u"film.ts"_s, packet.repeated(8))));
        QVERIFY(!isMovie(tree.file(u"short.ts"_s, packet.repeated(2))));
        QVERIFY(
            !isMovie(tree.file(u"source.ts"_s, QByteArray("export const x = 1;\n").repeated(99))));
        QVERIFY(!isMovie(tree.path(u"missing.ts"_s)));
        QVERIFY(isMovie(tree.file(u"film.mkv"_s)));
    }

    void offersCategories()
    {
        QStringList titles;
        for (const QString &key : EXIFSupport::categories()) {
            titles.append(EXIFSupport::titleForCategory(key));
            QCOMPARE(EXIFSupport::categoryForTitle(titles.constLast()), key);
        }
        QCOMPARE(titles, (QStringList{u"General"_s, u"Exif"_s, u"Exif Aux"_s, u"TIFF"_s, u"GIF"_s,
                                      u"JFIF"_s, u"PNG"_s, u"IPTC"_s, u"GPS"_s, u"CIFF"_s,
                                      u"8BIM"_s, u"DNG"_s, u"Maker Nikon"_s, u"Maker Canon"_s}));
        QCOMPARE(EXIFSupport::tagsForCategory(u"{Nothing}"_s), QStringList());
    }

    void offersTags_data()
    {
        const Table<int, QString, QString, QString> row("count", "first", "last", "special");

        row("{General}", 11, u"DPIHeight", u"ProfileName", u"PixelWidth");
        row("{Exif}", 57, u"ExposureTime", u"ExposureBiasValue", u"SubsecTimeOriginal");
        row("{ExifAux}", 9, u"LensInfo", u"Firmware", u"LensID");
        row("{TIFF}", 18, u"Compression", u"PrimaryChromaticities", u"Model");
        row("{GIF}", 5, u"LoopCount", u"UnclampedDelayTime", u"DelayTime");
        row("{JFIF}", 5, u"JFIFVersion", u"IsProgressive", u"XDensity");
        row("{PNG}", 13, u"Gamma", u"Title", u"Creation Time");
        row("{IPTC}", 51, u"ObjectTypeReference", u"ReleaseTime", u"Country/PrimaryLocationName");
        row("{GPS}", 31, u"GPSVersion", u"TrackRef", u"Differential");
        row("{CIFF}", 21, u"Description", u"MeasuredEV", u"RecordID");
        row("{8BIM}", 1, u"LayerNames", u"LayerNames", u"LayerNames");
        row("{DNG}", 6, u"DNGVersion", u"LensInfo", u"DNGBackwardVersion");
        row("{MakerNikon}", 18, u"ISOSetting", u"CameraSerialNumber", u"ShutterCount");
        row("{MakerCanon}", 8, u"OwnerName", u"AspectRatioInfo", u"Firmware");
    }

    void offersTags()
    {
        QFETCH(int, count);
        QFETCH(QString, first);
        QFETCH(QString, last);
        QFETCH(QString, special);
        const QStringList tags =
            EXIFSupport::tagsForCategory(QString::fromLatin1(QTest::currentDataTag()));
        QCOMPARE(tags.size(), count);
        QCOMPARE(tags.constFirst(), first);
        QCOMPARE(tags.constLast(), last);
        QVERIFY(tags.contains(special));
        QCOMPARE(QSet<QString>(tags.begin(), tags.end()).size(), tags.size());
    }

    void offersMediaTags()
    {
        const QStringList tags = ID3AVSupport::tags();
        QCOMPARE(tags.size(), 29);
        QCOMPARE(tags.mid(20), (QStringList{u"model"_s, u"software"_s, u"track"_s,
                                            u"numberOfTracks"_s, u"disk"_s, u"numberOfDisks"_s,
                                            u"duration"_s, u"durationHMS"_s, u"creationDate+"_s}));
        QVERIFY(!tags.contains(u"artwork"_s));
    }
};

QTEST_GUILESS_MAIN(TagRulesTest)
#include "tst_tagrules.moc"
