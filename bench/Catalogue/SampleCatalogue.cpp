#include "SampleCatalogue.h"

#include "Models/Text.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>
#include <stdexcept>

namespace navorin {

using namespace Qt::Literals::StringLiterals;

namespace {

QString numbered(QStringView text, int number)
{
    return text + u' ' + QString::number(number);
}

QJsonObject sampleTrack(int station, int index)
{
    return {{u"id"_s, station * 1000 + index},
            {u"track_type"_s, u"songsara"_s},
            {u"track_id"_s, QString::number(station * 1000 + index)},
            {u"title"_s, numbered(u"ترانه‌ای از دشت‌های دور", index)},
            {u"artist"_s, numbered(u"خواننده", station)},
            {u"artwork_url"_s, u"/artwork/track-%1-%2.jpg"_s.arg(station).arg(index)},
            {u"stream_url"_s, u"https://media.navorin.example/audio/%1/%2.mp3"_s.arg(station).arg(index)},
            {u"duration"_s, 180 + index % 120}};
}

QJsonObject sampleStation(int number, const CatalogueShape &shape)
{
    QJsonObject station{{u"genre"_s, u"station-%1"_s.arg(number)},
                        {u"title"_s, numbered(u"گروه موج - آهنگ شبانه", number)},
                        {u"artist"_s, u"گروه موج"_s},
                        {u"server_name"_s, numbered(u"رادیو", number)},
                        {u"stream_url"_s, u"/stream/station-%1"_s.arg(number)},
                        {u"artwork_url"_s, u"/artwork/station-%1.jpg"_s.arg(number)},
                        {u"source"_s, u"radio"_s},
                        {u"category"_s, u"iranian"_s},
                        {u"display_genre"_s, u"پاپ"_s},
                        {u"elapsed_seconds"_s, number * 0.5}};
    if (number % shape.listEvery == 0) {
        QJsonArray tracks;
        for (int i = 0; i < shape.tracks; ++i)
            tracks.append(sampleTrack(number, i));
        station.insert(u"tracks"_s, tracks);
        station.insert(u"track_count"_s, shape.tracks);
        station.insert(u"track_index"_s, 0);
    }
    return station;
}

QByteArray escaped(const QByteArray &json)
{
    QByteArray result;
    for (const auto character : QString::fromUtf8(json)) {
        if (character.unicode() < 0x80)
            result += char(character.unicode());
        else
            result += "\\u" + QByteArray::number(character.unicode(), 16).rightJustified(4, '0');
    }
    return result;
}

[[noreturn]] void fail()
{
    throw std::runtime_error("not a catalogue");
}

void take(const QJsonObject &object, const QString &key, std::optional<QString> &target)
{
    const auto value = object.value(key);
    if (value.isString())
        target = value.toString();
    else if (!value.isNull() && !value.isUndefined())
        fail();
}

void take(const QJsonObject &object, const QString &key, std::optional<qint64> &target)
{
    const auto value = object.value(key);
    if (value.isDouble() && std::trunc(value.toDouble()) == value.toDouble())
        target = value.toInteger();
    else if (!value.isNull() && !value.isUndefined())
        fail();
}

std::optional<QString> tryText(const QJsonObject &object, const QString &key)
{
    const auto value = object.value(key);
    return value.isString() ? std::optional(value.toString()) : std::nullopt;
}

std::optional<qint64> tryInteger(const QJsonObject &object, const QString &key)
{
    const auto value = object.value(key);
    if (value.isString())
        return parsedDecimal(value.toString());
    if (!value.isDouble() || std::trunc(value.toDouble()) != value.toDouble())
        return {};
    return value.toInteger();
}

PlaylistTrack trackOf(const QJsonObject &object)
{
    PlaylistTrack track;
    track.id = tryInteger(object, u"id"_s);
    track.trackType = tryText(object, u"track_type"_s);
    track.trackID = tryText(object, u"track_id"_s);
    if (!track.trackID && track.id)
        track.trackID = QString::number(*track.id);
    track.title = tryText(object, u"title"_s);
    track.artist = tryText(object, u"artist"_s);
    track.artworkURL = tryText(object, u"artwork_url"_s);
    track.streamURL = tryText(object, u"stream_url"_s);
    track.duration = tryInteger(object, u"duration"_s);
    return track;
}

Station stationOf(const QJsonObject &object)
{
    Station station;
    if (!object.value(u"genre"_s).isString())
        fail();
    station.genre = object.value(u"genre"_s).toString();
    take(object, u"title"_s, station.title);
    take(object, u"artist"_s, station.artist);
    take(object, u"source"_s, station.source);
    take(object, u"category"_s, station.category);
    take(object, u"server_name"_s, station.serverName);
    take(object, u"stream_url"_s, station.streamURL);
    take(object, u"artwork_url"_s, station.artworkURL);
    take(object, u"display_genre"_s, station.displayGenre);
    take(object, u"track_index"_s, station.trackIndex);
    take(object, u"track_count"_s, station.trackCount);
    if (object.contains(u"elapsed_seconds"_s))
        station.elapsedSeconds = object.value(u"elapsed_seconds"_s).toDouble();
    if (object.value(u"tracks"_s).isArray()) {
        station.tracks.emplace();
        for (const auto &track : object.value(u"tracks"_s).toArray())
            station.tracks->append(trackOf(track.toObject()));
    }
    return station;
}

} // namespace

QByteArray sampleCatalogue(const CatalogueShape &shape)
{
    QJsonArray stations;
    for (int i = 0; i < shape.stations; ++i)
        stations.append(sampleStation(i, shape));
    const auto body =
        QJsonDocument(QJsonObject{{u"code"_s, 200}, {u"data"_s, stations}}).toJson(QJsonDocument::Compact);
    return shape.escaped ? escaped(body) : body;
}

StationsResponse readByQJsonDocument(const QByteArray &body)
{
    const auto root = QJsonDocument::fromJson(body).object();
    StationsResponse response;
    take(root, u"code"_s, response.code);
    take(root, u"message"_s, response.message);
    if (root.value(u"data"_s).isArray()) {
        response.data.emplace();
        for (const auto &station : root.value(u"data"_s).toArray())
            response.data->append(stationOf(station.toObject()));
    }
    return response;
}

} // namespace navorin
