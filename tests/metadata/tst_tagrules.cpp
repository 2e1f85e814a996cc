// SPDX-License-Identifier: GPL-3.0-or-later
#include "metadata/EXIFSupport.h"
#include "metadata/FileConformance.h"
#include "metadata/ID3AVSupport.h"
#include "metadata/TImageTagRule.h"
#include "metadata/TVideoRule.h"
#include "platform/TDate.h"
#include "platform/TypeIdentifiers.h"
#include "support/TemporaryTree.h"

#include <QTest>

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
    void turnsValuesIntoText_data();
    void turnsValuesIntoText();
    void takesImageTags_data();
    void takesImageTags();
    void takesMediaTags_data();
    void takesMediaTags();
    void padsAndLimitsValuesAndDefaults();
    void startsWithItsOwnSettings();
    void showsItsTag();
    void keepsItsKind();
    void anUnsetDefaultBecomesEmpty();
    void knowsTheTypesOfFiles_data();
    void knowsTheTypesOfFiles();
    void looksIntoTransportStreams();
    void offersCategories();
    void offersTags_data();
    void offersTags();
    void offersMediaTags();
};

void TagRulesTest::turnsValuesIntoText_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("expected");

    QTest::newRow("text") << QVariant(u" a "_s) << u" a "_s;
    QTest::newRow("integer") << QVariant(-3) << u"-3"_s;
    QTest::newRow("large") << QVariant(std::numeric_limits<qulonglong>::max())
                           << u"18446744073709551615"_s;
    QTest::newRow("true") << QVariant(true) << u"1"_s;
    QTest::newRow("false") << QVariant(false) << u"0"_s;
    QTest::newRow("whole") << QVariant(72.0) << u"72"_s;
    QTest::newRow("fraction") << QVariant(2.8) << u"2.8"_s;
    QTest::newRow("small") << QVariant(0.004) << u"0.004"_s;
    QTest::newRow("periodic") << QVariant(1.0 / 60) << u"0.01666666666666667"_s;
    QTest::newRow("tiny") << QVariant(1.25e-7) << u"1.25e-07"_s;
    QTest::newRow("huge") << QVariant(1e20) << u"1e+20"_s;
    QTest::newRow("sixteen digits") << QVariant(0.1 + 0.2) << u"0.3"_s;
    QTest::newRow("array") << QVariant(QVariantList{2, 2, 0, 0}) << u"2.2.0.0"_s;
    QTest::newRow("one element") << QVariant(QVariantList{200}) << u"200"_s;
    QTest::newRow("no elements") << QVariant(QVariantList{}) << u""_s;
    QTest::newRow("texts") << QVariant(QStringList{u"a"_s, u"b"_s}) << u"a.b"_s;
    QTest::newRow("nested") << QVariant(QVariantList{1, QVariantList{2.5, u"x"_s}, QVariantMap{}})
                            << u"1.2.5.x.(unknown class:NSDictionary)"_s;
    QTest::newRow("dictionary") << QVariant(QVariantMap{{u"a"_s, 1}})
                                << u"(unknown class:NSDictionary)"_s;
    QTest::newRow("date") << QVariant::fromValue(TDate::fromSeconds(1))
                          << u"(unknown class:NSDate)"_s;
    QTest::newRow("data") << QVariant(QByteArray("abc")) << u"(unknown class:NSData)"_s;
}

void TagRulesTest::turnsValuesIntoText()
{
    QFETCH(QVariant, value);
    QFETCH(QString, expected);
    QCOMPARE(TTagRule::stringFromTagValue(value), expected);
}

void TagRulesTest::takesImageTags_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<TMetadataPtr>("metadata");
    QTest::addColumn<QString>("category");
    QTest::addColumn<QString>("tag");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<int>("level");
    QTest::addColumn<QString>("problem");

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

    const auto problem = [](const char *title, const QString &file, const TMetadataPtr &metadata,
                            const char *category, const char *tag, int level, const char *text) {
        QTest::newRow(title) << file << metadata << QString::fromLatin1(category)
                             << QString::fromLatin1(tag) << u"default"_s << level
                             << QString::fromLatin1(text);
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
    problem("no such tag", path, full, "Exif Aux", "%@", 1,
            "No value for '%@' in its 'Exif Aux' meta data. Default text used. File: /a b/x.jpg");
    problem("no such general tag", path, full, "General", "Depth", 1,
            "No value for 'Depth' in its 'General' meta data. Default text used. "
            "File: /a b/x.jpg");
}

void TagRulesTest::takesImageTags()
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
    QCOMPARE(log.isEmpty() ? QString() : log.entries().front().errDesc, problem);
    QVERIFY(log.count() <= 1);
}

void TagRulesTest::takesMediaTags_data()
{
    QTest::addColumn<bool>("video");
    QTest::addColumn<QString>("path");
    QTest::addColumn<TMetadataPtr>("metadata");
    QTest::addColumn<QString>("tag");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<int>("level");
    QTest::addColumn<QString>("problem");

    const TMetadataPtr song = TMetadata::fromVariantMap(kSong);
    QTest::newRow("title") << false << u"/a/x.mp3"_s << song << u"title"_s << u"Song"_s << 0
                           << QString();
    QTest::newRow("video title") << true << u"/a/x.mp4"_s << song << u"title"_s << u"Song"_s << 0
                                 << QString();
    QTest::newRow("date") << false << u"/a/x.mp3"_s << song << u"creationDate"_s
                          << u"(unknown class:NSDate)"_s << 0 << QString();
    QTest::newRow("never there")
        << false << u"/a/x.mp3"_s << song << u"creationDate+"_s << u"default"_s << 1
        << u"No value for 'creationDate+' in meta data. Default text used. File: /a/x.mp3"_s;
    QTest::newRow("audio for video")
        << true << u"/a/x.mp3"_s << song << u"title"_s << u"default"_s << 1
        << u"Video Meta data request: title -- File is not Video. Default text used. "
           "File: /a/x.mp3"_s;
    QTest::newRow("text for audio")
        << false << u"/a/x.txt"_s << song << u"track"_s << u"default"_s << 1
        << u"Audio Meta data request: track -- File is not Audio. Default text used. "
           "File: /a/x.txt"_s;
    QTest::newRow("not read")
        << false << u"/a/x.mp3"_s << TMetadataPtr() << u"title"_s << u"default"_s << 2
        << u"/a/x.mp3 meta data not yet processed, not yet ready to run. Default text used"_s;
    QTest::newRow("nothing there")
        << true << u"/a/x.mov"_s << TMetadata::fromVariantMap({}) << u"title"_s << u"default"_s << 1
        << u"Video Meta data request: title -- No meta data. Default text used. "
           "File: /a/x.mov"_s;
}

void TagRulesTest::takesMediaTags()
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
    QCOMPARE(log.isEmpty() ? QString() : log.entries().front().errDesc, problem);
    QVERIFY(log.count() <= 1);
}

void TagRulesTest::padsAndLimitsValuesAndDefaults()
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

void TagRulesTest::startsWithItsOwnSettings()
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

void TagRulesTest::showsItsTag()
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

void TagRulesTest::keepsItsKind()
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

void TagRulesTest::anUnsetDefaultBecomesEmpty()
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

void TagRulesTest::knowsTheTypesOfFiles_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("type");
    QTest::addColumn<bool>("conforms");

    const int file = static_cast<int>(TFileStatus::Kind::File);
    const int folder = static_cast<int>(TFileStatus::Kind::Folder);
    const int link = static_cast<int>(TFileStatus::Kind::Link);
    const QString image(TypeIdentifiers::kImage);
    QTest::newRow("photo") << u"/a/x.JPEG"_s << file << image << true;
    QTest::newRow("link") << u"/a/x.jpg"_s << link << image << true;
    QTest::newRow("folder") << u"/a/x.jpg"_s << folder << image << false;
    QTest::newRow("leading dot") << u"/a/.jpg"_s << file << image << false;
    QTest::newRow("song is no image") << u"/a/x.mp3"_s << file << image << false;
    QTest::newRow("movie is audiovisual")
        << u"/a/x.mov"_s << file << QString(TypeIdentifiers::kAudiovisualContent) << true;
    QTest::newRow("movie is no audio")
        << u"/a/x.mov"_s << file << QString(TypeIdentifiers::kAudio) << false;
}

void TagRulesTest::knowsTheTypesOfFiles()
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

void TagRulesTest::looksIntoTransportStreams()
{
    const TemporaryTree tree;
    const QByteArray packet = QByteArray(1, 0x47) + QByteArray(187, '\0');
    const auto isMovie = [](const QString &path) {
        return fileConformsTo(item(path), TypeIdentifiers::kMovie);
    };
    QVERIFY(isMovie(tree.file(u"film.ts"_s, packet.repeated(8))));
    QVERIFY(!isMovie(tree.file(u"short.ts"_s, packet.repeated(2))));
    QVERIFY(!isMovie(tree.file(u"source.ts"_s, QByteArray("export const x = 1;\n").repeated(99))));
    QVERIFY(!isMovie(tree.path(u"missing.ts"_s)));
    QVERIFY(isMovie(tree.file(u"film.mkv"_s)));
}

void TagRulesTest::offersCategories()
{
    QStringList titles;
    for (const QString &key : EXIFSupport::categories()) {
        titles.append(EXIFSupport::titleForCategory(key));
        QCOMPARE(EXIFSupport::categoryForTitle(titles.constLast()), key);
    }
    QCOMPARE(titles, (QStringList{u"General"_s, u"Exif"_s, u"Exif Aux"_s, u"TIFF"_s, u"GIF"_s,
                                  u"JFIF"_s, u"PNG"_s, u"IPTC"_s, u"GPS"_s, u"CIFF"_s, u"8BIM"_s,
                                  u"DNG"_s, u"Maker Nikon"_s, u"Maker Canon"_s}));
    QCOMPARE(EXIFSupport::tagsForCategory(u"{Nothing}"_s), QStringList());
}

void TagRulesTest::offersTags_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("last");
    QTest::addColumn<QString>("special");

    QTest::newRow("{General}") << 11 << u"DPIHeight"_s << u"ProfileName"_s << u"PixelWidth"_s;
    QTest::newRow("{Exif}") << 57 << u"ExposureTime"_s << u"ExposureBiasValue"_s
                            << u"SubsecTimeOriginal"_s;
    QTest::newRow("{ExifAux}") << 9 << u"LensInfo"_s << u"Firmware"_s << u"LensID"_s;
    QTest::newRow("{TIFF}") << 18 << u"Compression"_s << u"PrimaryChromaticities"_s << u"Model"_s;
    QTest::newRow("{GIF}") << 5 << u"LoopCount"_s << u"UnclampedDelayTime"_s << u"DelayTime"_s;
    QTest::newRow("{JFIF}") << 5 << u"JFIFVersion"_s << u"IsProgressive"_s << u"XDensity"_s;
    QTest::newRow("{PNG}") << 13 << u"Gamma"_s << u"Title"_s << u"Creation Time"_s;
    QTest::newRow("{IPTC}") << 51 << u"ObjectTypeReference"_s << u"ReleaseTime"_s
                            << u"Country/PrimaryLocationName"_s;
    QTest::newRow("{GPS}") << 31 << u"GPSVersion"_s << u"TrackRef"_s << u"Differential"_s;
    QTest::newRow("{CIFF}") << 21 << u"Description"_s << u"MeasuredEV"_s << u"RecordID"_s;
    QTest::newRow("{8BIM}") << 1 << u"LayerNames"_s << u"LayerNames"_s << u"LayerNames"_s;
    QTest::newRow("{DNG}") << 6 << u"DNGVersion"_s << u"LensInfo"_s << u"DNGBackwardVersion"_s;
    QTest::newRow("{MakerNikon}") << 18 << u"ISOSetting"_s << u"CameraSerialNumber"_s
                                  << u"ShutterCount"_s;
    QTest::newRow("{MakerCanon}") << 8 << u"OwnerName"_s << u"AspectRatioInfo"_s << u"Firmware"_s;
}

void TagRulesTest::offersTags()
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

void TagRulesTest::offersMediaTags()
{
    const QStringList tags = ID3AVSupport::tags();
    QCOMPARE(tags.size(), 29);
    QCOMPARE(tags.mid(20), (QStringList{u"model"_s, u"software"_s, u"track"_s, u"numberOfTracks"_s,
                                        u"disk"_s, u"numberOfDisks"_s, u"duration"_s,
                                        u"durationHMS"_s, u"creationDate+"_s}));
    QVERIFY(!tags.contains(u"artwork"_s));
}

QTEST_GUILESS_MAIN(TagRulesTest)
#include "tst_tagrules.moc"
