// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/CommonKeys.h"

using namespace Qt::StringLiterals;

namespace CommonKeys {

namespace {

constexpr auto kTitle = "title"_L1;
constexpr auto kArtist = "artist"_L1;
constexpr auto kAlbum = "albumName"_L1;
constexpr auto kCreator = "creator"_L1;
constexpr auto kCreationDate = "creationDate"_L1;
constexpr auto kCopyrights = "copyrights"_L1;
constexpr auto kDescription = "description"_L1;
constexpr auto kPublisher = "publisher"_L1;
constexpr auto kLanguage = "language"_L1;
constexpr auto kAuthor = "author"_L1;
constexpr auto kSoftware = "software"_L1;
constexpr auto kSubject = "subject"_L1;
constexpr auto kContributor = "contributor"_L1;
constexpr auto kIdentifier = "identifier"_L1;
constexpr auto kSource = "source"_L1;
constexpr auto kLocation = "location"_L1;
constexpr auto kMake = "make"_L1;
constexpr auto kModel = "model"_L1;

constexpr TagMeaning kId3v2[] = {
    {"TIT2"_L1, kTitle},        {"TPE1"_L1, kArtist},      {"TALB"_L1, kAlbum},
    {"TCOM"_L1, kCreator},      {"TCON"_L1, kType},        {"TYER"_L1, kCreationDate},
    {"TDRC"_L1, kCreationDate}, {"TCOP"_L1, kCopyrights},  {"TPUB"_L1, kPublisher},
    {"TLAN"_L1, kLanguage},     {"TEXT"_L1, kAuthor},      {"TSSE"_L1, kSoftware},
    {"TIT1"_L1, kSubject},      {"TPE3"_L1, kContributor}, {"TSRC"_L1, kIdentifier},
    {"TMED"_L1, kSource},       {"TRCK"_L1, kTrack},       {"TPOS"_L1, kDisc},
};

constexpr TagMeaning kItunes[] = {
    {"\251nam"_L1, kTitle},        {"\251ART"_L1, kArtist},  {"\251alb"_L1, kAlbum},
    {"\251wrt"_L1, kCreator},      {"gnre"_L1, kType},       {"\251gen"_L1, kType},
    {"\251day"_L1, kCreationDate}, {"cprt"_L1, kCopyrights}, {"desc"_L1, kDescription},
    {"\251pub"_L1, kPublisher},    {"\251aut"_L1, kAuthor},  {"\251too"_L1, kSoftware},
    {"\251grp"_L1, kSubject},      {"trkn"_L1, kTrack},      {"disk"_L1, kDisc},
};

constexpr TagMeaning kQuickTimeUserData[] = {
    {"\251nam"_L1, kTitle},        {"\251ART"_L1, kArtist},     {"\251alb"_L1, kAlbum},
    {"\251com"_L1, kCreator},      {"\251wrt"_L1, kCreator},    {"\251gen"_L1, kType},
    {"\251day"_L1, kCreationDate}, {"\251cpy"_L1, kCopyrights}, {"\251inf"_L1, kDescription},
    {"\251des"_L1, kDescription},  {"\251pub"_L1, kPublisher},  {"\251aut"_L1, kAuthor},
    {"\251swr"_L1, kSoftware},     {"\251grp"_L1, kSubject},    {"\251xyz"_L1, kLocation},
    {"\251mak"_L1, kMake},         {"\251mod"_L1, kModel},      {"\251trk"_L1, CommonKeys::kTrack},
};

constexpr TagMeaning kQuickTimeMetadata[] = {
    {"title"_L1, kTitle},
    {"artist"_L1, kArtist},
    {"album"_L1, kAlbum},
    {"creator"_L1, kCreator},
    {"composer"_L1, kCreator},
    {"genre"_L1, kType},
    {"creationdate"_L1, kCreationDate},
    {"copyright"_L1, kCopyrights},
    {"information"_L1, kDescription},
    {"description"_L1, kDescription},
    {"publisher"_L1, kPublisher},
    {"language"_L1, kLanguage},
    {"author"_L1, kAuthor},
    {"software"_L1, kSoftware},
    {"subject"_L1, kSubject},
    {"contributor"_L1, kContributor},
    {"identifier"_L1, kIdentifier},
    {"source"_L1, kSource},
    {"location.ISO6709"_L1, kLocation},
    {"make"_L1, kMake},
    {"model"_L1, kModel},
};

constexpr TagMeaning kVorbis[] = {
    {"TITLE"_L1, kTitle},
    {"ARTIST"_L1, kArtist},
    {"ALBUM"_L1, kAlbum},
    {"COMPOSER"_L1, kCreator},
    {"GENRE"_L1, kType},
    {"DATE"_L1, kCreationDate},
    {"COPYRIGHT"_L1, kCopyrights},
    {"DESCRIPTION"_L1, kDescription},
    {"ORGANIZATION"_L1, kPublisher},
    {"PUBLISHER"_L1, kPublisher},
    {"LANGUAGE"_L1, kLanguage},
    {"LYRICIST"_L1, kAuthor},
    {"AUTHOR"_L1, kAuthor},
    {"ENCODER"_L1, kSoftware},
    {"SUBJECT"_L1, kSubject},
    {"CONDUCTOR"_L1, kContributor},
    {"PERFORMER"_L1, kContributor},
    {"ISRC"_L1, kIdentifier},
    {"SOURCEMEDIA"_L1, kSource},
    {"LOCATION"_L1, kLocation},
    {"TOTALTRACKS"_L1, kTrackTotal},
    {"TRACKTOTAL"_L1, kTrackTotal},
    {"TRACKNUMBER"_L1, kTrack},
    {"TOTALDISCS"_L1, kDiscTotal},
    {"DISCTOTAL"_L1, kDiscTotal},
    {"DISCNUMBER"_L1, kDisc},
};

constexpr TagMeaning kAsf[] = {
    {"Title"_L1, kTitle},
    {"Author"_L1, kArtist},
    {"WM/AlbumTitle"_L1, kAlbum},
    {"WM/Composer"_L1, kCreator},
    {"WM/Genre"_L1, kType},
    {"WM/Year"_L1, kCreationDate},
    {"Copyright"_L1, kCopyrights},
    {"Description"_L1, kDescription},
    {"WM/Publisher"_L1, kPublisher},
    {"WM/Language"_L1, kLanguage},
    {"WM/Writer"_L1, kAuthor},
    {"WM/EncodingSettings"_L1, kSoftware},
    {"WM/ContentGroupDescription"_L1, kSubject},
    {"WM/Conductor"_L1, kContributor},
    {"WM/ISRC"_L1, kIdentifier},
    {"WM/TrackNumber"_L1, kTrack},
    {"WM/PartOfSet"_L1, kDisc},
};

// ISRC is the source's supplier in RIFF, not the recording's code.
constexpr TagMeaning kRiffInfo[] = {
    {"INAM"_L1, kTitle},      {"IART"_L1, kArtist},      {"IPRD"_L1, kAlbum},
    {"IMUS"_L1, kCreator},    {"IGNR"_L1, kType},        {"ICRD"_L1, kCreationDate},
    {"ICOP"_L1, kCopyrights}, {"ICMT"_L1, kDescription}, {"ILNG"_L1, kLanguage},
    {"IWRI"_L1, kAuthor},     {"ISFT"_L1, kSoftware},    {"ISBJ"_L1, kSubject},
    {"ISRC"_L1, kSource},     {"IMED"_L1, kSource},      {"ITRK"_L1, kTrack},
    {"IPRT"_L1, kTrack},
};

constexpr TagMeaning kAiffText[] = {
    {"NAME"_L1, kTitle},
    {"AUTH"_L1, kArtist},
    {"(c) "_L1, kCopyrights},
};

constexpr TagMeaning kApe[] = {
    {"TITLE"_L1, kTitle},           {"ARTIST"_L1, kArtist},       {"ALBUM"_L1, kAlbum},
    {"COMPOSER"_L1, kCreator},      {"GENRE"_L1, kType},          {"YEAR"_L1, kCreationDate},
    {"COPYRIGHT"_L1, kCopyrights},  {"PUBLISHER"_L1, kPublisher}, {"LANGUAGE"_L1, kLanguage},
    {"CONDUCTOR"_L1, kContributor}, {"ISRC"_L1, kIdentifier},     {"MEDIA"_L1, kSource},
    {"TRACK"_L1, kTrack},           {"DISC"_L1, kDisc},
};

// A tag for the whole album carries "ALBUM/" before its name: its title is the album's name, its
// part is the disc, and the number of its parts counts the tracks.
constexpr TagMeaning kMatroska[] = {
    {"TITLE"_L1, kTitle},
    {"ALBUM/ARTIST"_L1, kArtist},
    {"ARTIST"_L1, kArtist},
    {"ALBUM/TITLE"_L1, kAlbum},
    {"ALBUM"_L1, kAlbum},
    {"COMPOSER"_L1, kCreator},
    {"ALBUM/GENRE"_L1, kType},
    {"GENRE"_L1, kType},
    {"ALBUM/DATE_RECORDED"_L1, kCreationDate},
    {"ALBUM/DATE_RELEASED"_L1, kCreationDate},
    {"DATE_RECORDED"_L1, kCreationDate},
    {"DATE_RELEASED"_L1, kCreationDate},
    {"COPYRIGHT"_L1, kCopyrights},
    {"SUMMARY"_L1, kDescription},
    {"DESCRIPTION"_L1, kDescription},
    {"PUBLISHER"_L1, kPublisher},
    {"LANGUAGE"_L1, kLanguage},
    {"WRITTEN_BY"_L1, kAuthor},
    {"LYRICIST"_L1, kAuthor},
    {"ENCODER"_L1, kSoftware},
    {"SUBJECT"_L1, kSubject},
    {"CONDUCTOR"_L1, kContributor},
    {"ISRC"_L1, kIdentifier},
    {"ORIGINAL_MEDIA_TYPE"_L1, kSource},
    {"ALBUM/TOTAL_PARTS"_L1, kTrackTotal},
    {"TOTAL_PARTS"_L1, kTrackTotal},
    {"TRACK"_L1, kTrack},
    {"PART_NUMBER"_L1, kTrack},
    {"DISC"_L1, kDisc},
    {"ALBUM/PART_NUMBER"_L1, kDisc},
};

constexpr TagMeaning kGeneric[] = {
    {"TITLE"_L1, kTitle},         {"ARTIST"_L1, kArtist},
    {"ALBUM"_L1, kAlbum},         {"IMUS"_L1, kCreator},
    {"COMPOSER"_L1, kCreator},    {"GENRE"_L1, kType},
    {"DATE"_L1, kCreationDate},   {"COPYRIGHT"_L1, kCopyrights},
    {"COMMENT"_L1, kDescription}, {"DESCRIPTION"_L1, kDescription},
    {"PUBLISHER"_L1, kPublisher}, {"LANGUAGE"_L1, kLanguage},
    {"IWRI"_L1, kAuthor},         {"LYRICIST"_L1, kAuthor},
    {"SOFTWARE"_L1, kSoftware},   {"ENCODER"_L1, kSoftware},
    {"ISBJ"_L1, kSubject},        {"SUBJECT"_L1, kSubject},
    {"ISRC"_L1, kSource},         {"IMED"_L1, kSource},
    {"TRACK"_L1, kTrack},         {"DISC"_L1, kDisc},
    {"PRODUCT"_L1, kAlbum},
};

} // namespace

TagMeanings id3v2()
{
    return kId3v2;
}

TagMeanings itunes()
{
    return kItunes;
}

TagMeanings quickTimeUserData()
{
    return kQuickTimeUserData;
}

TagMeanings quickTimeMetadata()
{
    return kQuickTimeMetadata;
}

TagMeanings vorbis()
{
    return kVorbis;
}

TagMeanings asf()
{
    return kAsf;
}

TagMeanings riffInfo()
{
    return kRiffInfo;
}

TagMeanings aiffText()
{
    return kAiffText;
}

TagMeanings ape()
{
    return kApe;
}

TagMeanings matroska()
{
    return kMatroska;
}

TagMeanings generic()
{
    return kGeneric;
}

} // namespace CommonKeys
